#include "Child.h"

#include "Store.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brimlet::test {

namespace {

constexpr unsigned longestLifeSeconds = 3600; // of a child that hangs; no test waits for it

void sendNumber(int pipe, int64_t number)
{
    // A reader that has exited is not an error of the writer: SIGPIPE is ignored, and the number is not needed.
    [[maybe_unused]] const ssize_t written = ::write(pipe, &number, sizeof number);
}

std::optional<int64_t> receiveNumber(int pipe)
{
    int64_t number = 0;
    ssize_t received = 0;
    do
        received = ::read(pipe, &number, sizeof number);
    while (received < 0 && errno == EINTR);
    return received == sizeof number ? std::optional<int64_t>(number) : std::nullopt;
}

std::array<int, 2> makePipe()
{
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0)
        throw std::runtime_error("no pipe");
    return ends;
}

// An exception ends the child here; the frames above are those of the parent's test.
[[noreturn]] void runChild(const Child::Body &body, int in, int out) noexcept
{
    const rlimit none{};
    setrlimit(RLIMIT_CORE, &none);
    ::alarm(longestLifeSeconds);
    Channel channel(in, out);
    body(channel);
    _exit(0); // without the parent's exit handlers, and without a leak check: a child may end in the middle
}

} // namespace

void Channel::tell(int64_t number) const
{
    sendNumber(out, number);
}

int64_t Channel::hear() const
{
    const std::optional<int64_t> number = receiveNumber(in);
    if (!number)
        _exit(0); // the parent has exited
    return *number;
}

void PrintTo(const End &end, std::ostream *out)
{
    if (end.signal)
        *out << "killed by signal " << end.signal;
    else
        *out << "exit code " << end.code;
}

Child::Child(const Body &body)
{
    std::signal(SIGPIPE, SIG_IGN);
    const std::array<int, 2> toChild = makePipe();
    const std::array<int, 2> toParent = makePipe();
    process = fork();
    if (process < 0)
        throw std::runtime_error("no child");
    if (process == 0) {
        ::close(toChild[1]);
        ::close(toParent[0]);
        runChild(body, toChild[0], toParent[1]);
    }
    ::close(toChild[0]);
    ::close(toParent[1]);
    out = toChild[1];
    in = toParent[0];
}

Child::~Child()
{
    if (!end) {
        kill();
        wait();
    }
    ::close(in);
    ::close(out);
}

std::optional<int64_t> Child::hear() const
{
    return receiveNumber(in);
}

void Child::tell(int64_t number) const
{
    sendNumber(out, number);
}

void Child::kill() const
{
    ::kill(process, SIGKILL);
}

End Child::wait()
{
    if (end)
        return *end;
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR)
        ;
    end = WIFSIGNALED(status) ? End{0, WTERMSIG(status)} : End{WEXITSTATUS(status), 0};
    return *end;
}

int64_t launchResult()
{
    Child child([](Channel &channel) {
        const DebugLines lines;
        Library library;
        const uint32_t result = getLaunchCacheResult();
        library.exit();
        channel.tell(result);
    });
    const int64_t result = child.hear().value_or(-1);
    return child.wait().isClean() ? result : -1;
}

} // namespace brimlet::test
