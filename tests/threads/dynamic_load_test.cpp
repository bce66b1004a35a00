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

struct tqjson2_nodo;
using lee_t = uint16_t (*)(const char *, tqjson2_nodo **);
using genera_t = char *(*)(const tqjson2_nodo *);
using destruye_nodo_t = void (*)(tqjson2_nodo **);
using destruye_texto_t = void (*)(char **);

class Library {
  public:
    explicit Library(const char *path) {
#if defined(_WIN32)
        handle_ = LoadLibraryA(path);
#else
        handle_ = dlopen(path, RTLD_NOW | RTLD_LOCAL);
#endif
    }
    ~Library() {
#if !defined(_WIN32)
        if (handle_) // the library stays loaded on Windows: threads' slots may still point at it
            dlclose(handle_);
#endif
    }
    bool loaded() const {
        return handle_ != nullptr;
    }
    template <class F> F find(const char *name) const {
#if defined(_WIN32)
        // Through void (*)(), the type every function pointer may pass through.
        return reinterpret_cast<F>(
            reinterpret_cast<void (*)()>(GetProcAddress(static_cast<HMODULE>(handle_), name)));
#else
        return reinterpret_cast<F>(dlsym(handle_, name));
#endif
    }

  private:
#if defined(_WIN32)
    HMODULE handle_;
#else
    void *handle_;
#endif
};

} // namespace

TEST(DynamicLoad, TheLibraryLoadedAtRunTimeReadsAndWritesOnSeveralThreads) {
    const Library tqjson2(TQ_TQJSON2_LIBRARY), tqbase(TQ_TQBASE_LIBRARY);
    ASSERT_TRUE(tqjson2.loaded() && tqbase.loaded());
    const auto lee = tqjson2.find<lee_t>("tqjson2_se_lee_texto_utf8");
    const auto genera = tqjson2.find<genera_t>("tqjson2_genera_texto_utf8_minificado");
    const auto destruye_nodo = tqjson2.find<destruye_nodo_t>("tqjson2_destruye_nodo");
    const auto destruye_texto = tqbase.find<destruye_texto_t>("marlstr_destruye");
    ASSERT_TRUE(lee && genera && destruye_nodo && destruye_texto);
    const std::string documento = R"({"a" : [1,2.5,"x\u00e9",true,null],"b" : {"c" : "d"}})";
    std::vector<int> good(4, 0);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            for (int vuelta = 0; vuelta < 50; ++vuelta) {
                tqjson2_nodo *raiz = nullptr;
                if (lee(documento.c_str(), &raiz) != 1)
                    continue;
                char *texto = genera(raiz);
                good[t] += std::string(texto) == R"({"a" : [1,2.5,"x)"
                                                 "\xC3\xA9"
                                                 R"(",true,null],"b" : {"c" : "d"}})";
                destruye_texto(&texto);
                destruye_nodo(&raiz);
            }
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(good, std::vector<int>(4, 50));
}
