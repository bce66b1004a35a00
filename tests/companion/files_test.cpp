#include <gtest/gtest.h>

#include <cerrno>
#include <thread>

#if !defined(_WIN32)
#include <sys/stat.h>
#include <unistd.h>
#else
#include <windows.h>
#endif

#include "companion/files.h"
#include "companion/text_output.h"
#include "support/recording_handler.h"
#include "support/temp_file.h"

namespace {

constexpr char kModulo[] = "prueba: ficheros";
constexpr int kLinea = 7;
const std::string kOld = "{\n    \"saved\" : \"before\"\n}\n";
const std::string kNew = "[\n    1,\n    \"two\",\n    3\n]\n";

// Saves kNew as text in three writes (the first formatted, the others as bytes); lc_fclose's
// result.
int save(const std::filesystem::path &target) {
    lc_fichero_t *fichero = f_lc_fopen_u(target.u16string().c_str(), u"wt", kModulo, kLinea);
    ctxt_printf(fichero, "%s", kNew.substr(0, 8).c_str());
    lc_fwrite(fichero, kNew.data() + 8, 10);
    lc_fwrite(fichero, kNew.data() + 18, kNew.size() - 18);
    return lc_fclose(fichero);
}

// While alive, every save fails at `paso`.
struct SimulatedFailure {
    SimulatedFailure(i_paso_fichero_t paso, unsigned escritura) {
        i_ficheros_simula_fallo(paso, escritura);
    }
    ~SimulatedFailure() { i_ficheros_simula_fallo(i_PASO_NINGUNO, 0); }
};

std::vector<Report> failed(const char *condicion) {
    return {{condicion, kModulo, kLinea}};
}

enum class Kind { Existing, New, Link };
const struct {
    const char *label;
    Kind kind;
} kKinds[] = {{"a file", Kind::Existing},
              {"a new name", Kind::New},
#if !defined(_WIN32)
              {"a symbolic link", Kind::Link}
#endif
};

} // namespace

// Whatever step fails, the target (a file, a name not yet taken, a symbolic link to a file)
// keeps what it held, the new file beside it is gone and the step is reported once against the
// open's caller; with no failure the target holds exactly the new text.
TEST(Files, AFailedStepOfASaveLeavesTheTargetAsItWasAndIsReported) {
    const struct {
        const char *label;
        i_paso_fichero_t paso;
        unsigned escritura;
        const char *condicion;
    } steps[] = {
        {"no failure", i_PASO_NINGUNO, 0, nullptr},
        {"first write", i_PASO_ESCRITURA, 1, "(fallo_escritura) == 0"},
        {"last write", i_PASO_ESCRITURA, 3, "(fallo_escritura) == 0"},
        {"flush", i_PASO_VOLCADO, 0, "(fallo_volcado) == 0"},
        {"replace", i_PASO_SUSTITUCION, 0, "(fallo_sustitucion) == 0"},
    };
    for (const auto &step : steps) {
        for (const auto &[label, kind] : kKinds) {
            SCOPED_TRACE(std::string(step.label) + ", " + label);
            TempFolder folder;
            const std::filesystem::path target = folder / "saved.json";
            if (kind != Kind::New)
                fill_file(folder / "real.json", kOld);
            if (kind == Kind::Existing)
                std::filesystem::rename(folder / "real.json", target);
            if (kind == Kind::Link)
                std::filesystem::create_symlink("real.json", target);
            const std::vector<std::string> before = folder.names();
            RecordingHandler handler;
            int result;
            {
                SimulatedFailure seam(step.paso, step.escritura);
                result = save(target);
            }
            if (step.condicion) {
                EXPECT_EQ(result, EIO);
                EXPECT_EQ(handler.reports(), failed(step.condicion));
                EXPECT_EQ(folder.names(), before);
                if (kind != Kind::New) {
                    EXPECT_EQ(read_file(target), kOld);
                }
            } else {
                EXPECT_EQ(result, 0);
                EXPECT_TRUE(handler.reports().empty());
                EXPECT_EQ(folder.names(),
                          kind == Kind::New ? std::vector<std::string>{"saved.json"} : before);
                EXPECT_EQ(read_file(target), in_text_mode(kNew));
            }
            if (kind == Kind::Link) {
                EXPECT_EQ(std::filesystem::read_symlink(target), "real.json");
            }
        }
    }
}

// A save given up keeps the target as it was; a file that cannot be opened is reported with the
// system's reason in errno, and its null handle is accepted everywhere.
TEST(Files, ASaveGivenUpOrNeverOpenedChangesNothing) {
    TempFolder folder;
    const std::filesystem::path target = folder / "saved.json";
    fill_file(target, kOld);
    lc_fichero_t *fichero = f_lc_fopen_u(target.u16string().c_str(), u"wt", kModulo, kLinea);
    EXPECT_EQ(lc_fwrite(fichero, kNew.data(), kNew.size()), CIERTO);
    lc_fdescarta(fichero);
    EXPECT_EQ(read_file(target), kOld);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"saved.json"});

    RecordingHandler handler;
    fichero =
        f_lc_fopen_u((folder / "none" / "x.json").u16string().c_str(), u"wt", kModulo, kLinea);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(fichero, nullptr);
    EXPECT_EQ(handler.reports(), failed("(abierto) != NULL"));
    EXPECT_EQ(lc_fwrite(fichero, "x", 1), FALSO);
    EXPECT_EQ(ctxt_printf(fichero, "%s", "x"), -1);
    EXPECT_EQ(lc_fclose(fichero), EBADF);
    lc_fdescarta(fichero);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"saved.json"});
}

#if !defined(_WIN32)

// Permissions stay, a new file gets 0666 less the umask, and a target with another hard link is
// written in place, so that both names keep sharing it; a failed write there is reported too. A
// pipe is written in place: it stays a pipe, and its reader receives the text.
TEST(Files, ASaveKeepsPermissionsHardLinksAndPipes) {
    const auto mode_of = [](const std::filesystem::path &path) {
        struct stat estado;
        return stat(path.c_str(), &estado) == 0 ? mode_t(estado.st_mode & 07777) : mode_t(0);
    };
    TempFolder folder;
    const std::filesystem::path private_file = folder / "private.json", fresh = folder / "new.json";
    fill_file(private_file, kOld);
    chmod(private_file.c_str(), 0600);
    const mode_t umask_before = umask(027);
    EXPECT_EQ(save(private_file), 0);
    EXPECT_EQ(save(fresh), 0);
    umask(umask_before);
    EXPECT_EQ(mode_of(private_file), 0600u);
    EXPECT_EQ(mode_of(fresh), 0640u);
    EXPECT_EQ(read_file(private_file), kNew);

    const std::filesystem::path linked = folder / "linked.json", second = folder / "second.json";
    fill_file(linked, kOld);
    std::filesystem::create_hard_link(linked, second);
    EXPECT_EQ(save(linked), 0);
    EXPECT_EQ(read_file(second), kNew);
    RecordingHandler handler;
    {
        SimulatedFailure seam(i_PASO_ESCRITURA, 2);
        EXPECT_EQ(save(second), EIO);
    }
    EXPECT_EQ(handler.reports(), failed("(fallo_escritura) == 0"));
    EXPECT_EQ(std::filesystem::hard_link_count(linked), 2u);
    const std::filesystem::path pipe = folder / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::string received;
    std::thread reader([&] { received = read_file(pipe); });
    EXPECT_EQ(save(pipe), 0);
    reader.join();
    EXPECT_EQ(received, kNew);
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"linked.json", "new.json", "pipe",
                                                        "private.json", "second.json"}));
}

#else

// A target that another process holds open without letting it be deleted cannot be replaced,
// and the device NUL is no file: both are written in place.
TEST(Files, TargetsThatCannotBeReplacedAreWrittenInPlace) {
    TempFolder folder;
    const std::filesystem::path held = folder / "held.json";
    fill_file(held, kOld);
    HANDLE holder = CreateFileW(held.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(holder, INVALID_HANDLE_VALUE);
    EXPECT_EQ(save(held), 0);
    // The holder's file is the one written: it was not replaced.
    char bytes[256];
    DWORD got = 0;
    EXPECT_TRUE(ReadFile(holder, bytes, sizeof bytes, &got, nullptr));
    CloseHandle(holder);
    EXPECT_EQ(std::string(bytes, got), in_text_mode(kNew));
    EXPECT_EQ(save(folder / "NUL"), 0);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"held.json"});
}

#endif
