# KORX_SANITIZE=ON builds everything in this directory tree with AddressSanitizer and
# UndefinedBehaviorSanitizer; any report stops the program with a failure status.
if(KORX_SANITIZE)
    set(_korx_sanitize_flags -fsanitize=address,undefined -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    add_compile_options(${_korx_sanitize_flags})
    add_link_options(-fsanitize=address,undefined)
endif()

# KORX_BUILD_FUZZERS=ON instruments the library for coverage-guided fuzzing as well.
if(KORX_BUILD_FUZZERS)
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()
