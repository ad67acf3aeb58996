# What every target of this project is compiled with.

# Results must be the same bits everywhere, so no fused multiply-add, here and at consumers: the
# kernel's small operations are inline and take part in the consumer's own expressions.
set(VERIDANE_FP_OPTIONS $<$<CXX_COMPILER_ID:GNU,Clang,AppleClang>:-ffp-contract=off>)

function(veridane_target target)
    target_compile_features(${target} PUBLIC cxx_std_17)
    set_target_properties(
        ${target}
        PROPERTIES CXX_EXTENSIONS OFF
                   CXX_VISIBILITY_PRESET hidden
                   VISIBILITY_INLINES_HIDDEN ON
                   POSITION_INDEPENDENT_CODE ON)
    target_compile_options(
        ${target}
        PRIVATE
            ${VERIDANE_FP_OPTIONS}
            # Unique symbols would keep a module loaded after dlclose.
            $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>
            $<$<CXX_COMPILER_ID:GNU,Clang,AppleClang>:-Wall
            -Wextra
            -Wpedantic
            -Wshadow
            -Wconversion
            -Wsign-conversion
            -Wold-style-cast
            -Wnon-virtual-dtor
            -Woverloaded-virtual
            -Wcast-align>
            $<$<CXX_COMPILER_ID:MSVC>:/W4
            /permissive-
            /fp:precise>)
    if(VERIDANE_WERROR)
        target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU,Clang,AppleClang>:-Werror>
                                                 $<$<CXX_COMPILER_ID:MSVC>:/WX>)
    endif()
    if(VERIDANE_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=${VERIDANE_SANITIZE}
                                                 -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=${VERIDANE_SANITIZE})
    endif()
    if(VERIDANE_FUZZ)
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
        target_link_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
    endif()
    if(VERIDANE_COVERAGE)
        target_compile_options(${target} PRIVATE --coverage -fprofile-update=atomic)
        target_link_options(${target} PRIVATE --coverage)
    endif()
endfunction()
