# The korx library target.

include(cmake/KorxSources.cmake)

# The platform layer is compiled once and shared by the library and by the tests that
# exercise it directly (its functions are hidden in the shared library).
add_library(korx_platform OBJECT ${KORX_PLATFORM_SOURCES})
target_include_directories(korx_platform PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/source_utilities/ind>)
target_compile_features(korx_platform PUBLIC cxx_std_17)
set_target_properties(korx_platform PROPERTIES
    POSITION_INDEPENDENT_CODE ON
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
korx_warnings(korx_platform)

if(KORX_BUILD_SHARED)
    add_library(korx SHARED)
else()
    add_library(korx STATIC)
    target_compile_definitions(korx PUBLIC KORX_STATIC)
endif()
add_library(korx::korx ALIAS korx)

target_sources(korx PRIVATE ${KORX_SOURCES} $<TARGET_OBJECTS:korx_platform>)
target_compile_definitions(korx PRIVATE KORX_BUILDING)
target_compile_definitions(korx_platform PRIVATE KORX_BUILDING)
if(NOT KORX_BUILD_SHARED)
    target_compile_definitions(korx_platform PUBLIC KORX_STATIC)
endif()
target_include_directories(korx
    PUBLIC
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
    PRIVATE
        ${PROJECT_SOURCE_DIR}/source_utilities/ind
        ${PROJECT_SOURCE_DIR}/source_stream/ind
        ${PROJECT_SOURCE_DIR}/source_math/ind)
target_compile_features(korx PUBLIC cxx_std_17)
set_target_properties(korx PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    EXPORT_NAME korx)
korx_warnings(korx)
# Calls between the library's own exported functions may be inlined: nothing interposes them.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(korx PRIVATE -fno-semantic-interposition)
endif()
