# Sources of the library, by subsystem folder.

set(KORX_PLATFORM_SOURCES
)

set(KORX_SOURCES
)
