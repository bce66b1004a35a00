// The library keeps no state between calls but the decoding tolerance counter: reads of one
// tree may run side by side, and so may whole reads and writes of separate trees, from
// threads that also free blocks the others allocated. The tsan preset checks them for races.
#include <gtest/gtest.h>

#include <latch>
#include <string>
#include <thread>
#include <vector>

#include "support/tree_builder.h"

namespace {

constexpr int kThreads = 4;

template <class Work> void in_threads(Work work) {
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back(work, t);
    for (std::thread &thread : threads)
        thread.join();
}

} // namespace

// Threads that look up, read and write one tree at once share it. The first lookups of a large
// object make its index: threads that look it up at once, exactly and ignoring case, each make a
// table, publish one and use whichever came first; the tree reads the same before and after.
TEST(Threads, ReadersShareOneTreeAndTheIndexTheyMakeOfALargeObject) {
    constexpr int kMembers = 3000;
    const auto name = [](const char *prefijo, int i) {
        const std::string texto = prefijo + std::to_string(i);
        return std::u16string(texto.begin(), texto.end());
    };
    std::string texto = records_document(7);
    texto.pop_back(); // the members of a large object follow the records
    for (int i = 0; i < kMembers; ++i)
        texto += ",\"key" + std::to_string(i) + "\": " + std::to_string(i);
    Tree tree{nullptr};
    ASSERT_EQ(tqjson2_se_lee_texto_utf8((texto + "}").c_str(), &tree.raiz), CIERTO);
    const std::string expected_indented = indented(tree.raiz), expected = minified(tree.raiz);
    // A member of a record looked up ignoring case, its text, and the whole tree written.
    const auto reads_the_same = [&] {
        tqjson2_nodo_t *items = nullptr, *nombre = nullptr;
        const bool found =
            tqjson2_existe_atributo_con_nombre_may_o_min_en_objeto(tree.raiz, u"ITEMS", &items) &&
            tqjson2_existe_atributo_con_nombre_en_objeto(
                static_cast<tqjson2_nodo_t *>(
                    arr_GetPunteroConTipo(tqjson2_get_valores_array(items), 3)),
                u"name", &nombre);
        const std::u16string valor = found ? take(tqjson2_get_valor_cadena_unicode(nombre)) : u"";
        return valor == u"n\u00e9 \"3\"" && indented(tree.raiz) == expected_indented &&
               minified(tree.raiz) == expected;
    };
    std::vector<int> good(kThreads, 0);
    std::latch start(kThreads); // all at once, so that they make the tables side by side
    in_threads([&](int t) {
        start.arrive_and_wait();
        for (int k = 0; k < kMembers; ++k) {
            if (k % 600 == 300) // while the others look up
                good[t] += reads_the_same();
            const int i = (k * 7 + t * 1000) % kMembers; // each thread in an order of its own
            tqjson2_nodo_t *exacto = nullptr, *cualquiera = nullptr;
            int32_t a = -1, b = -1;
            const auto exacta = [&] {
                return tqjson2_existe_atributo_con_nombre_en_objeto(
                    tree.raiz, name("key", i).c_str(), &exacto);
            };
            const auto may_o_min = [&] {
                return tqjson2_existe_atributo_con_nombre_may_o_min_en_objeto(
                    tree.raiz, name("KEY", i).c_str(), &cualquiera);
            };
            const bool found = t % 2 ? (may_o_min() && exacta()) : (exacta() && may_o_min());
            good[t] += found && tqjson2_es_valor_entero(exacto, &a) && a == i &&
                       tqjson2_es_valor_entero(cualquiera, &b) && b == i &&
                       !tqjson2_existe_atributo_con_nombre_en_objeto(tree.raiz, u"KEY1", nullptr);
        }
    });
    EXPECT_EQ(good, std::vector<int>(kThreads, kMembers + 5));
    EXPECT_EQ(minified(tree.raiz), expected);
}

// Each thread reads, writes and rereads its own trees; the last tree of each is handed to the
// next thread, which destroys it: blocks cross threads on their way back.
TEST(Threads, SeparateTreesAreReadAndWrittenSideBySide) {
    std::vector<std::string> expected(kThreads);
    for (int t = 0; t < kThreads; ++t) {
        Tree tree{nullptr};
        ASSERT_EQ(tqjson2_se_lee_texto_utf8(records_document(t + 1).c_str(), &tree.raiz), CIERTO);
        expected[t] = minified(tree.raiz);
    }
    std::vector<tqjson2_nodo_t *> handed(kThreads, nullptr);
    std::vector<int> good(kThreads, 0);
    in_threads([&](int t) {
        for (int vuelta = 0; vuelta < 5; ++vuelta) {
            tqjson2_nodo_t *raiz = nullptr, *otra = nullptr;
            tqjson2_se_lee_texto_utf8_sin_decodificar_secuencias_utf8(
                records_document(t + 1).c_str(), &raiz);
            const std::string texto = indented(raiz);
            tqjson2_se_lee_texto_utf8(texto.c_str(), &otra);
            good[t] += minified(otra) == expected[t];
            tqjson2_destruye_nodo(&raiz);
            if (vuelta < 4)
                tqjson2_destruye_nodo(&otra);
            else
                handed[t] = otra;
        }
    });
    in_threads([&](int t) { tqjson2_destruye_nodo(&handed[(t + 1) % kThreads]); });
    EXPECT_EQ(good, std::vector<int>(kThreads, 5));
    EXPECT_EQ(handed, std::vector<tqjson2_nodo_t *>(kThreads, nullptr));
}
