# SPDX-License-Identifier: MIT
# cmake -DFOLDER=<of drawings> -DOUTPUT=<source file> -P embed.cmake
file(GLOB files "${FOLDER}/*.svg")
set(entries)
foreach(file IN LISTS files)
  file(READ "${file}" document)
  string(REGEX REPLACE "\n *" "" document "${document}")
  # The file's name without its last extension: names have dots of their own.
  cmake_path(GET file STEM LAST_ONLY name)
  list(APPEND entries "    {\"${name}\", R\"svg(${document})svg\"},\n")
endforeach()
list(SORT entries)
list(JOIN entries "" entries)
file(WRITE "${OUTPUT}" "// SPDX-License-Identifier: MIT
#include \"platform/graphics/SymbolFiles_p.h\"

namespace platform {

namespace {
constexpr SymbolFile files[]{
${entries}};
}

std::span<const SymbolFile> symbolFiles()
{
    return files;
}

} // namespace platform
")
