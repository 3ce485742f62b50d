# trovast_library(name SOURCES ... LINK ...): one static library a folder of src. LINK names the
# layers and libraries it uses. tools/check holds every #include against the table of layers.
function(trovast_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE trovast_options)
endfunction()

# trovast_test(name SOURCES ... LINK ...): one test program a folder of tests. What links the
# views carries the label "qt", by which the thread sanitizer's run leaves it out.
function(trovast_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
    target_link_libraries(${name} PRIVATE ${ARG_LINK} GTest::gtest_main trovast_options)
    set(properties TIMEOUT 120 ENVIRONMENT ${TROVAST_TEST_ENVIRONMENT})
    if(ARG_LINK MATCHES "trovast_views|trovast_linux(;|$)|Qt6::")
        list(APPEND properties LABELS qt)
    endif()
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
        PROPERTIES ${properties})
endfunction()

# trovast_fuzz(name SOURCES ... LINK ...): one fuzz target, run as name [CORPUS].
function(trovast_fuzz name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_LINK} trovast_options)
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
endfunction()

# Adds every folder below this one that has a CMakeLists.txt.
function(trovast_add_folders)
    file(GLOB_RECURSE lists CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR}
        ${CMAKE_CURRENT_SOURCE_DIR}/*/CMakeLists.txt)
    list(SORT lists)
    foreach(list IN LISTS lists)
        get_filename_component(folder ${list} DIRECTORY)
        if(NOT folder IN_LIST TROVAST_SKIP_FOLDERS)
            add_subdirectory(${folder})
        endif()
    endforeach()
endfunction()
