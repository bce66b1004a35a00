// The module string that every report of the tqjson2 tree API carries (tree, codec, reader and
// writer alike), naming the library and the module.
#pragma once

inline constexpr char i_MODULO[] = "tqjson2: tqjson2";
