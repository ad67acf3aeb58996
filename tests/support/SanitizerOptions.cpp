// Tests ask for more memory than there is on purpose. The sanitizers read their options from these
// functions and then answer with null, as malloc does; other builds never call them.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options();
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_options();

const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}

const char* __tsan_default_options() {
    return "allocator_may_return_null=1";
}
