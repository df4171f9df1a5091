# Options for our own code, as the interface target gpb_options; never installed.
add_library(gpb_options INTERFACE)
target_compile_options(gpb_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual>)

# Programs are position-independent, whatever the compiler's own default.
include(CheckPIESupported)
check_pie_supported(LANGUAGES C CXX)

# The shipped build is hardened, which scripts/check-hardening looks for; a sanitizer build brings its own checks.
if(GPB_SANITIZE)
    target_compile_options(gpb_options INTERFACE
        -fsanitize=${GPB_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(gpb_options INTERFACE -fsanitize=${GPB_SANITIZE})
elseif(CMAKE_BUILD_TYPE MATCHES "Release|RelWithDebInfo")
    target_compile_options(gpb_options INTERFACE
        -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3 -fstack-protector-strong -fstack-clash-protection)
    target_link_options(gpb_options INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
endif()

# Coverage for the fuzzer in everything; the fuzzer itself is linked into its targets only. Calls through pointers and
# virtual tables are not checked: both need type information that the library deliberately does not export.
if(GPB_FUZZ)
    target_compile_options(gpb_options INTERFACE
        -fsanitize=fuzzer-no-link -fno-sanitize=function,vptr)
    target_link_options(gpb_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# Counters that threads update without each other lose counts, and lost counts come out as negative branches, which the
# report cannot read.
if(GPB_COVERAGE)
    target_compile_options(gpb_options INTERFACE --coverage -fprofile-update=atomic -O0)
    target_link_options(gpb_options INTERFACE --coverage)
endif()
