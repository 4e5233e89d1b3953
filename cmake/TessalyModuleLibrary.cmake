# A subsystem library of the SMS module: static, position-independent, and hidden, because it is
# linked into Sms.tsm, which exports only its entry points.
function(tessaly_add_module_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    set_target_properties(${name} PROPERTIES
        POSITION_INDEPENDENT_CODE ON
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    # Inline variables of the standard library (std::piecewise_construct in unoptimised builds)
    # would otherwise be STB_GNU_UNIQUE symbols, which a version script cannot make local:
    # Sms.tsm would export them beside its entry points. GCC's flag: clang makes no such symbols
    # and refuses it (the fuzz build).
    target_compile_options(${name} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
    target_link_libraries(${name} PUBLIC ${ARG_LIBS})
endfunction()
