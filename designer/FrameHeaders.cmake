# Writes one header per registered frame class, <OUT>/frames/designer/<Class>.h, for code that uic
# generates from a designer form: the form names the class (TBank_LF), the header makes that name
# the frame finished like one from the registry (frames::Designed<frames::TBank_LF>).
#   cmake -DROOT=<source root> -DOUT=<include folder> -DSTAMP=<file> -P FrameHeaders.cmake
# The classes are found in the sources, never listed by hand: every FRAMES_REGISTER(Class, ...) of
# frames/**/*.cpp, with the header under frames/ that declares "class Class". A header is rewritten
# only when its text changes, and one whose class is gone is removed. A registered class that no
# header declares gets no header (a warning; the plugin's test fails on it).
cmake_minimum_required(VERSION 3.25)
foreach(v ROOT OUT STAMP)
  if(NOT DEFINED ${v})
    message(FATAL_ERROR "FrameHeaders.cmake: ${v} is not set")
  endif()
endforeach()

file(GLOB_RECURSE headers RELATIVE ${ROOT} ${ROOT}/frames/*.h)
file(GLOB_RECURSE sources ${ROOT}/frames/*.cpp)
list(SORT headers)

foreach(h ${headers})
  file(STRINGS ${ROOT}/${h} lines REGEX "^[ \t]*class[ \t]+T[A-Za-z0-9_]+[ \t]*(final[ \t]*)?:")
  foreach(line ${lines})
    string(REGEX REPLACE "^[ \t]*class[ \t]+(T[A-Za-z0-9_]+).*$" "\\1" cls "${line}")
    set(header_of_${cls} ${h})
  endforeach()
endforeach()

set(classes "")
foreach(s ${sources})
  file(STRINGS ${s} lines REGEX "FRAMES_REGISTER\\([ \t]*T[A-Za-z0-9_]+[ \t]*,")
  foreach(line ${lines})
    string(REGEX REPLACE "^.*FRAMES_REGISTER\\([ \t]*(T[A-Za-z0-9_]+).*$" "\\1" cls "${line}")
    list(APPEND classes ${cls})
  endforeach()
endforeach()
list(REMOVE_DUPLICATES classes)

set(dir ${OUT}/frames/designer)
file(MAKE_DIRECTORY ${dir})
set(written "")
foreach(cls ${classes})
  if(NOT DEFINED header_of_${cls})
    # Not a reason to stop everyone's build: the designer plugin's test names the class.
    message(WARNING "FrameHeaders.cmake: no header under frames/ declares class ${cls}; "
                    "designer forms cannot use it")
    continue()
  endif()
  string(CONCAT text
    "// Generated from the frames' sources: the frame class that designer forms name, finished on\n"
    "// construction like a frame the registry creates.\n"
    "#pragma once\n"
    "#include \"frames/core/Designed.h\"\n"
    "#include \"${header_of_${cls}}\"\n\n"
    "using ${cls} = frames::Designed<frames::${cls}>;\n")
  set(file ${dir}/${cls}.h)
  set(old "")
  if(EXISTS ${file})
    file(READ ${file} old)
  endif()
  if(NOT old STREQUAL text)
    file(WRITE ${file} "${text}")
  endif()
  list(APPEND written ${file})
endforeach()

file(GLOB existing ${dir}/*.h)
foreach(f ${existing})
  if(NOT f IN_LIST written)
    file(REMOVE ${f})
  endif()
endforeach()
list(LENGTH classes n)
file(WRITE ${STAMP} "${n}\n")
