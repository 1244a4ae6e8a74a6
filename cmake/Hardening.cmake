# How the Windows programs are protected, and how they become the same bytes wherever they are built. What Debian's tools
# do by themselves is asked for all the same: other distributions' tools have other defaults.
target_compile_options(fonklav_options INTERFACE -fstack-protector-strong -ffile-prefix-map=${CMAKE_SOURCE_DIR}=.)
# MinGW checks only calls that fill or copy memory, and those only where the compiler knows the target's size.
target_compile_definitions(fonklav_options INTERFACE $<$<CONFIG:Release>:_FORTIFY_SOURCE=2>)
target_link_options(fonklav_options INTERFACE
  -fstack-protector-strong -Wl,--dynamicbase,--nxcompat,--no-insert-timestamp
  -Wl,--major-os-version=6,--minor-os-version=1,--major-subsystem-version=6,--minor-subsystem-version=1)
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  target_link_options(fonklav_options INTERFACE -Wl,--high-entropy-va)
  # Sections that begin where a page of the file does: Wine maps those, and reads all others into memory of the process.
  # Windows maps both, so the 32-bit exe, which is larger, stays small instead.
  target_link_options(fonklav_options INTERFACE -Wl,--file-alignment,4096)
endif()
