// Tests ask for more memory than there is on purpose. The address sanitizer reads its options from
// this function and then answers with null, as malloc does; other builds never call it.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options();

const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}
