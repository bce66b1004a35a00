// The libraries loaded at run time, as a plug-in host loads them (dlopen, LoadLibrary), serve
// reads and writes on several threads as they do when linked: the pool finds each thread's heap
// without the static TLS that a library loaded late cannot have.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace {
#if defined(_WIN32)
// Kept loaded: the slots of threads that used it may still point into it.
void *open_library(const char *path) {
    return LoadLibraryA(path);
}
// Through void (*)(), the type every function pointer may pass through.
template <class F> F find(void *library, const char *name) {
    return reinterpret_cast<F>(
        reinterpret_cast<void (*)()>(GetProcAddress(static_cast<HMODULE>(library), name)));
}
#else
void *open_library(const char *path) {
    return dlopen(path, RTLD_NOW | RTLD_LOCAL);
}
template <class F> F find(void *library, const char *name) {
    return reinterpret_cast<F>(dlsym(library, name));
}
#endif
} // namespace

TEST(DynamicLoad, TheLibraryLoadedAtRunTimeReadsAndWritesOnSeveralThreads) {
    struct tqjson2_nodo;
    void *tqjson2 = open_library(TQ_TQJSON2_LIBRARY), *tqbase = open_library(TQ_TQBASE_LIBRARY);
    ASSERT_TRUE(tqjson2 && tqbase);
    const auto lee =
        find<uint16_t (*)(const char *, tqjson2_nodo **)>(tqjson2, "tqjson2_se_lee_texto_utf8");
    const auto genera =
        find<char *(*)(const tqjson2_nodo *)>(tqjson2, "tqjson2_genera_texto_utf8_minificado");
    const auto destruye_nodo = find<void (*)(tqjson2_nodo **)>(tqjson2, "tqjson2_destruye_nodo");
    const auto destruye_texto = find<void (*)(char **)>(tqbase, "marlstr_destruye");
    ASSERT_TRUE(lee && genera && destruye_nodo && destruye_texto);
    const std::string documento = R"({"a" : [1,2.5,"x\u00e9",true,null],"b" : {"c" : "d"}})";
    const std::string esperado =
        "{\"a\" : [1,2.5,\"x\xC3\xA9\",true,null],\"b\" : {\"c\" : \"d\"}}";
    std::vector<int> good(4, 0);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            for (int vuelta = 0; vuelta < 50; ++vuelta) {
                tqjson2_nodo *raiz = nullptr;
                if (lee(documento.c_str(), &raiz) != 1)
                    continue;
                char *texto = genera(raiz);
                good[t] += texto == esperado;
                destruye_texto(&texto);
                destruye_nodo(&raiz);
            }
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(good, std::vector<int>(4, 50));
}
