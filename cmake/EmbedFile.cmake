# Script mode: writes OUT, a C++ file holding the bytes of IN as NAME.
file(READ "${IN}" hex HEX)
string(LENGTH "${hex}" hexLength)
math(EXPR size "${hexLength} / 2")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")
string(REGEX REPLACE "(0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,)" "\\1\n" bytes "${bytes}")
file(WRITE "${OUT}" "// Generated from ${IN}; do not edit.\n#include <string_view>\nnamespace tripkit::resources {\nnamespace {\nconst unsigned char data[] = {\n${bytes}0};\n}\nextern const std::string_view ${NAME};\nconst std::string_view ${NAME}{reinterpret_cast<const char*>(data), ${size}};\n}\n")
