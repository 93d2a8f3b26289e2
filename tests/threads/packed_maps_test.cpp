#include "tessel/fits_map.h"
#include "tessel/fits_text.h"
#include "threads/drawn_figure.h"

#include <atomic>
#include <cstddef>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <memory>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace pavane
{

namespace
{

int isReadWhole(const std::string& name, std::string& error)
{
    FitsMap map;
    return readFitsMap(name, -1, map, error) && map.cells.columns() == 40 &&
           map.cells(29, 39) == 1199 * 0.5f;
}

/// Holds the allocator and CFITSIO for most of the time.
void keepBusy(const std::atomic<int>& stop)
{
    for (int i = 1; !stop; ++i) {
        std::vector<std::unique_ptr<char[]>> pieces;
        for (int k = 0; k < 200; ++k)
            pieces.push_back(std::make_unique<char[]>(static_cast<std::size_t>(k * i % 70000 + 1)));
        fitsfile* file = nullptr;
        void* memory = nullptr;
        std::size_t bytes = 0;
        int status = 0;
        long lengths[2] = {40, 30};
        fits_create_memfile(&file, &memory, &bytes, 2880, std::realloc, &status);
        fits_create_img(file, SHORT_IMG, 2, lengths, &status);
        fits_close_file(file, &status);
        std::free(memory);
    }
}

/// From here on the process may copy itself no more.
int forbidForks()
{
    sock_filter rules[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_clone, 2, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_clone3, 1, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EAGAIN),
    };
    const sock_fprog program{static_cast<unsigned short>(std::size(rules)), rules};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

}  // namespace

TEST(PackedMaps, AreReadByThreadsWhileOthersAllocate)
{
    const std::string name = saved("threads.fits", packedMap(RICE_1));
    std::string error;
    ASSERT_TRUE(isReadWhole(name, error)) << error;
    const int times = timesOf(hasUnforkableMalloc() ? 3 : 40);
    std::atomic<int> stop = hasUnforkableMalloc();
    std::vector<std::thread> busy;
    for (int i = 0; i < 2; ++i)
        busy.emplace_back([&] { keepBusy(stop); });
    std::atomic<int> whole = 0;
    std::vector<std::thread> readers;
    for (int i = 0; i < 4; ++i)
        readers.emplace_back([&] {
            std::string told;
            for (int k = 0; k < times; ++k)
                whole += isReadWhole(name, told);
        });
    for (std::thread& reader : readers)
        reader.join();
    stop = 1;
    for (std::thread& each : busy)
        each.join();
    EXPECT_EQ(whole, 4 * times);
}

TEST(PackedMaps, AreRefusedWithAReasonWhereNoProcessMayBeStarted)
{
    const std::string name = saved("forbidden.fits", packedMap(RICE_1));
    EXPECT_EXIT(
        {
            std::string error;
            const int isRefused = forbidForks() && !isReadWhole(name, error);
            std::fprintf(stderr, "%s\n", error.c_str());
            std::_Exit(isRefused ? 0 : 1);
        },
        testing::ExitedWithCode(0), "needs a process of its own: Resource temporarily unavailable");
}

}  // namespace pavane
