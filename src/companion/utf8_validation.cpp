// Each byte is judged with the one to three before it: three table lookups (by the high and
// low half of the previous byte and the high half of this one) give the errors a pair of
// bytes can show, and a fourth test says where a continuation byte is due after a three- or
// four-byte lead. A step carries the previous step's last bytes, and a text ends as if zeros
// followed it, so a sequence cut short at the end shows like one cut short by ASCII.
#include "utf8_validation.h"

#include <cstring>

#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
#include <tmmintrin.h>
#define i_VECTORIAL 1
#define i_CON_SSSE3 __attribute__((target("ssse3")))
#elif defined(_M_X64)
#include <intrin.h>
#include <tmmintrin.h>
#define i_VECTORIAL 1
#define i_CON_SSSE3
#endif

#if defined(i_VECTORIAL)

namespace {

bool i_detecta_ssse3() {
#if defined(_MSC_VER)
    int registros[4];
    __cpuid(registros, 1);
    return (registros[2] >> 9) & 1;
#else
    __builtin_cpu_init();
    return __builtin_cpu_supports("ssse3");
#endif
}

const bool g_hay_ssse3 = i_detecta_ssse3();

// What a pair of bytes (previous, current) can show; a pair is an error when its three
// lookups share a bit.
constexpr char i_CORTA = 1 << 0;          // a lead followed by ASCII or another lead
constexpr char i_LARGA = 1 << 1;          // a continuation after ASCII
constexpr char i_LARGA_3 = 1 << 2;        // E0 followed by 80..9F
constexpr char i_DEMASIADO = 1 << 3;      // above U+10FFFF
constexpr char i_SUSTITUTA = 1 << 4;      // ED followed by A0..BF
constexpr char i_LARGA_2 = 1 << 5;        // C0 or C1
constexpr char i_DEMASIADO_1000 = 1 << 6; // F5.. followed by 80..8F
constexpr char i_LARGA_4 = 1 << 6;        // F0 followed by 80..8F
constexpr char i_DOS_CONT = char(1 << 7); // two continuations: must be inside a sequence
constexpr char i_ACARREO = i_CORTA | i_LARGA | i_DOS_CONT;

i_CON_SSSE3 inline __m128i i_mitad_alta(__m128i x) {
    return _mm_and_si128(_mm_srli_epi16(x, 4), _mm_set1_epi8(0x0F));
}

struct i_estado {
    __m128i anterior = _mm_setzero_si128();
    __m128i error = _mm_setzero_si128();
    __m128i incompleto = _mm_setzero_si128(); // the previous step ended inside a sequence
};

i_CON_SSSE3 inline void i_paso(i_estado &estado, __m128i x) {
    if (_mm_movemask_epi8(x) == 0) { // ASCII: only a sequence left open before can be wrong
        estado.error = _mm_or_si128(estado.error, estado.incompleto);
        estado.incompleto = _mm_setzero_si128();
        estado.anterior = x;
        return;
    }
    const __m128i previo1 = _mm_alignr_epi8(x, estado.anterior, 15);
    const __m128i alta1 = _mm_shuffle_epi8(
        _mm_setr_epi8(i_LARGA, i_LARGA, i_LARGA, i_LARGA, i_LARGA, i_LARGA, i_LARGA, i_LARGA,
                      i_DOS_CONT, i_DOS_CONT, i_DOS_CONT, i_DOS_CONT, i_CORTA | i_LARGA_2, i_CORTA,
                      i_CORTA | i_LARGA_3 | i_SUSTITUTA,
                      i_CORTA | i_DEMASIADO | i_DEMASIADO_1000 | i_LARGA_4),
        i_mitad_alta(previo1));
    constexpr char i_GRANDE = i_ACARREO | i_DEMASIADO | i_DEMASIADO_1000;
    const __m128i baja1 = _mm_shuffle_epi8(
        _mm_setr_epi8(i_ACARREO | i_LARGA_3 | i_LARGA_2 | i_LARGA_4, i_ACARREO | i_LARGA_2,
                      i_ACARREO, i_ACARREO, i_ACARREO | i_DEMASIADO, i_GRANDE, i_GRANDE, i_GRANDE,
                      i_GRANDE, i_GRANDE, i_GRANDE, i_GRANDE, i_GRANDE, i_GRANDE | i_SUSTITUTA,
                      i_GRANDE, i_GRANDE),
        _mm_and_si128(previo1, _mm_set1_epi8(0x0F)));
    constexpr char i_CONT_8 =
        i_LARGA | i_LARGA_2 | i_DOS_CONT | i_LARGA_3 | i_DEMASIADO_1000 | i_LARGA_4;
    constexpr char i_CONT_9 = i_LARGA | i_LARGA_2 | i_DOS_CONT | i_LARGA_3 | i_DEMASIADO;
    constexpr char i_CONT_AB = i_LARGA | i_LARGA_2 | i_DOS_CONT | i_SUSTITUTA | i_DEMASIADO;
    const __m128i alta2 = _mm_shuffle_epi8(
        _mm_setr_epi8(i_CORTA, i_CORTA, i_CORTA, i_CORTA, i_CORTA, i_CORTA, i_CORTA, i_CORTA,
                      i_CONT_8, i_CONT_9, i_CONT_AB, i_CONT_AB, i_CORTA, i_CORTA, i_CORTA, i_CORTA),
        i_mitad_alta(x));
    const __m128i casos = _mm_and_si128(_mm_and_si128(alta1, baja1), alta2);
    // Third and fourth bytes of a sequence: two continuations in a row are right only there.
    const __m128i tercero =
        _mm_subs_epu8(_mm_alignr_epi8(x, estado.anterior, 14), _mm_set1_epi8(char(0xE0 - 1)));
    const __m128i cuarto =
        _mm_subs_epu8(_mm_alignr_epi8(x, estado.anterior, 13), _mm_set1_epi8(char(0xF0 - 1)));
    const __m128i debida =
        _mm_and_si128(_mm_cmpgt_epi8(_mm_or_si128(tercero, cuarto), _mm_setzero_si128()),
                      _mm_set1_epi8(char(0x80)));
    estado.error = _mm_or_si128(estado.error, _mm_xor_si128(debida, casos));
    // A lead in the last three bytes that needs more bytes than the step has left.
    estado.incompleto =
        _mm_subs_epu8(x, _mm_setr_epi8(-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1,
                                       char(0xF0 - 1), char(0xE0 - 1), char(0xC0 - 1)));
    estado.anterior = x;
}

} // namespace

bool i_hay_validacion_utf8_vectorial() {
    return g_hay_ssse3;
}

i_CON_SSSE3 bool i_utf8_bien_formado_vectorial(const unsigned char *p, const unsigned char *fin) {
    i_estado estado;
    for (; fin - p >= 16; p += 16)
        i_paso(estado, _mm_loadu_si128(reinterpret_cast<const __m128i *>(p)));
    if (p != fin) {
        alignas(16) unsigned char ultimo[16] = {};
        std::memcpy(ultimo, p, static_cast<size_t>(fin - p));
        i_paso(estado, _mm_load_si128(reinterpret_cast<const __m128i *>(ultimo)));
    }
    const __m128i error = _mm_or_si128(estado.error, estado.incompleto);
    return _mm_movemask_epi8(_mm_cmpeq_epi8(error, _mm_setzero_si128())) == 0xFFFF;
}

#else

bool i_hay_validacion_utf8_vectorial() {
    return false;
}

bool i_utf8_bien_formado_vectorial(const unsigned char *, const unsigned char *) {
    return false;
}

#endif
