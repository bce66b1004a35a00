// How much memory the process holds under the patterns of threads that long-running applications
// follow, read from the system (RSS, Linux) and from the memory component's own counters. Prints
// figures; run with bash bench/run.sh memory. One tree is what one read of twitter.json holds.
//   producer and consumer: one thread reads, another destroys, at most two trees alive
//   a thread per read: each thread reads, destroys and ends
//   a large document: twitter.json repeated to 100 MB, read from memory and destroyed
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

#include "support/tree_consumer.h"
#include "tqjson2.h"

namespace {

constexpr double kMB = 1024.0 * 1024.0;

double rss_mb() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmRSS:", 0) == 0)
            return std::stod(line.substr(6)) / 1024.0;
    return 0.0;
}

double pool_mb() {
    marlspy_estado_bloques_pequenos_t estado;
    marlspy_nousar_estado_bloques_pequenos(&estado);
    return estado.retenido / kMB;
}

std::string file(const std::string &name) {
    std::ifstream in(std::string(TQ_BENCH_DATA_DIR) + "/" + name, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

tqjson2_nodo_t *read(const std::string &text) {
    tqjson2_nodo_t *raiz = nullptr;
    if (tqjson2_se_lee_texto_utf8(text.c_str(), &raiz) != CIERTO) {
        std::fprintf(stderr, "not read\n");
        std::exit(1);
    }
    return raiz;
}

void row(const char *what, double start, double middle, double end, double tree) {
    std::printf("%-44s %8.1f MB (%5.1f trees), last half %6.1f MB (%5.1f trees)\n", what,
                end - start, (end - start) / tree, end - middle, (end - middle) / tree);
}

void producer_and_consumer(const std::string &text, int reads, double tree) {
    const double start = rss_mb(), pool_start = pool_mb();
    double middle = start, pool_middle = pool_start;
    {
        TreeConsumer consumer;
        for (int i = 1; i <= reads; ++i) {
            consumer.hand_over(read(text));
            if (i == reads / 2)
                middle = rss_mb(), pool_middle = pool_mb();
        }
    }
    const std::string what = "producer and consumer, " + std::to_string(reads) + " reads: RSS";
    row(what.c_str(), start, middle, rss_mb(), tree);
    row("  pool's chunks held", pool_start, pool_middle, pool_mb(), tree);
}

void thread_per_read(const std::string &text, int threads, double tree) {
    const double start = rss_mb(), pool_start = pool_mb();
    double middle = start, pool_middle = pool_start;
    for (int i = 1; i <= threads; ++i) {
        std::thread([&] {
            tqjson2_nodo_t *raiz = read(text);
            tqjson2_destruye_nodo(&raiz);
        }).join();
        if (i == threads / 2)
            middle = rss_mb(), pool_middle = pool_mb();
    }
    const std::string what = "a thread per read, " + std::to_string(threads) + " threads: RSS";
    row(what.c_str(), start, middle, rss_mb(), tree);
    row("  pool's chunks held", pool_start, pool_middle, pool_mb(), tree);
}

void large_document(const std::string &twitter) {
    std::string big = "[";
    while (big.size() < 100 * 1024 * 1024)
        big += twitter + ",";
    big.back() = ']';
    const double before = rss_mb();
    tqjson2_nodo_t *raiz = read(big);
    const double peak = rss_mb();
    tqjson2_destruye_nodo(&raiz);
    const double after = rss_mb();
    std::printf("a document of %.0f MB read and destroyed: RSS %.1f MB before, %.1f MB with the "
                "tree, %.1f MB after the destroy: %.1f%% of the growth kept\n",
                big.size() / kMB, before, peak, after, 100.0 * (after - before) / (peak - before));
}

} // namespace

int main(int argc, char **argv) {
    // twitter.json holds integers beyond 32 bits, each an internal-error report.
    error_interno_set_manejador([](const char *, const char *, int) {});
    const int reads = argc > 1 ? std::atoi(argv[1]) : 2000;
    const int threads = argc > 2 ? std::atoi(argv[2]) : 500;
    const std::string twitter = file("twitter.json");
    // One tree: what a read of twitter.json holds, measured after a warm-up read.
    tqjson2_nodo_t *calentamiento = read(twitter);
    tqjson2_destruye_nodo(&calentamiento);
    const double before = rss_mb();
    tqjson2_nodo_t *una = read(twitter);
    const double tree = std::max(rss_mb() - before, 1.3);
    tqjson2_destruye_nodo(&una);
    std::printf("one tree of twitter.json: %.2f MB\n", tree);
    producer_and_consumer(twitter, reads, tree);
    thread_per_read(twitter, threads, tree);
    large_document(twitter);
    return 0;
}
