// tqbase standard-library wrapper.
#include "stdc_wrapper.h"

#include <cmath>
#include <cstring>

size_t tqstdc_strlen(const char *cadena) {
    return std::strlen(cadena);
}
double tqstdc_fabs(double valor) {
    return std::fabs(valor);
}
void *tqstdc_memset(void *destino, int valor, size_t num) {
    return std::memset(destino, valor, num);
}
