// tqbase string component: hexadecimal digits, written in upper case and read in either case.
#include "hex_digits.h"

#include "verifica.h"

static const char *const i_MODULO = "tqbase: hexadecimal";

static int i_valor_digito(char16_t digito) {
    if (digito >= u'0' && digito <= u'9')
        return digito - u'0';
    if (digito >= u'A' && digito <= u'F')
        return digito - u'A' + 10;
    if (digito >= u'a' && digito <= u'f')
        return digito - u'a' + 10;
    return -1;
}

tqbool marlstrhex_codifica_caracter_u(char16_t caracter, char16_t *digito_1, char16_t *digito_2) {
    static constexpr char16_t i_DIGITOS[] = u"0123456789ABCDEF";
    if (!i_VERIFICA_NO_NULO(digito_1) || !i_VERIFICA_NO_NULO(digito_2))
        return FALSO;
    *digito_1 = i_DIGITOS[(caracter >> 4) & 0xF];
    *digito_2 = i_DIGITOS[caracter & 0xF];
    return CIERTO;
}

tqbool marlstrhex_decodifica_caracter_u(char16_t digito_1, char16_t digito_2, char16_t *caracter) {
    if (!i_VERIFICA_NO_NULO(caracter))
        return FALSO;
    const int alto = i_valor_digito(digito_1);
    const int bajo = i_valor_digito(digito_2);
    if (alto < 0 || bajo < 0)
        return FALSO;
    *caracter = static_cast<char16_t>(alto * 16 + bajo);
    return CIERTO;
}
