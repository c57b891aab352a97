// A store whose file cannot grow.
#include "Store.h"

#include <csignal>
#include <filesystem>
#include <sys/resource.h>

using namespace brimlet::test;

namespace {

// No file of this process grows beyond a length while it lives; a write beyond it fails.
class FileLimit
{
public:
    explicit FileLimit(rlim_t bytes) : handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit limit{bytes, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileLimit()
    {
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
    }
    FileLimit(const FileLimit &) = delete;
    FileLimit &operator=(const FileLimit &) = delete;

private:
    void (*handler)(int);
    rlimit before{};
};

class FileLimitTest : public StoreTest
{
};

// The pages of the table are beyond the limit, those of the journal below it.
TEST_F(FileLimitTest, AFailedCommitIsNotNoticed)
{
    ASSERT_GT(std::filesystem::file_size("CacheDb"), 60000u);
    const DebugLines lines;
    {
        const FileLimit limit(20000);
        EXPECT_EQ(send(addSites, R"({"D":{"items":[{"id":1}]}})"), 0u);
    }
    EXPECT_EQ(lines.all(), std::vector<std::string>());
    EXPECT_EQ(file.number("SELECT count(*) FROM Sites"), 0);
}

} // namespace
