# One way to register a test binary: every test runs headless on Qt's offscreen platform,
# carries one of the labels unit / ui / e2e, and has a timeout so that an unanswered modal
# run fails instead of hanging the suite.
include(GoogleTest)

function(tessaly_add_test name)
    cmake_parse_arguments(ARG "" "LABEL;TIMEOUT" "SOURCES;LIBS" ${ARGN})
    if(NOT ARG_LABEL MATCHES "^(unit|ui|e2e)$")
        message(FATAL_ERROR "tessaly_add_test(${name}): LABEL must be unit, ui or e2e")
    endif()
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 60)
    endif()
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE tessaly-test-main ${ARG_LIBS})
    gtest_discover_tests(${name}
        DISCOVERY_TIMEOUT 60
        PROPERTIES
            LABELS ${ARG_LABEL}
            TIMEOUT ${ARG_TIMEOUT}
            ENVIRONMENT "QT_QPA_PLATFORM=offscreen;TESSALY_TEST=1")
endfunction()
