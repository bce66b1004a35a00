// The record behind a file of the file component, shared by the components that write to it.
#pragma once

#include <cstdio>

struct lc_fichero {
    std::FILE *flujo;
};
