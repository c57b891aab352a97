// A process of its own for what may end badly: it is forked, runs one function, talks with its parent through two
// pipes, and its status is read when it has ended. The parent never launches the library, so it has one thread and may
// fork.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <ostream>
#include <sys/types.h>

namespace brimlet::test {

// The child's side of the pipes.
class Channel
{
public:
    Channel(int fromParent, int toParent) : in(fromParent), out(toParent) {}
    // Gives the parent a number: what is told has happened, even if the child is killed right after.
    void tell(int64_t number) const;
    // Waits for a number of the parent, as a child does that the parent inspects or kills.
    int64_t hear() const;

private:
    int in;
    int out;
};

// How a child ended: its exit code, or the signal that killed it.
struct End
{
    int code = 0;
    int signal = 0;
    bool isClean() const { return code == 0 && signal == 0; }
};
void PrintTo(const End &end, std::ostream *out);

class Child
{
public:
    using Body = std::function<void(Channel &)>;

    // Runs the body in the child. A body that returns ends the child with the code 0; one that runs for too long is
    // killed by an alarm.
    explicit Child(const Body &body);
    ~Child();
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;

    // The child's next number; nothing once the child has ended.
    std::optional<int64_t> hear() const;
    void tell(int64_t number) const;
    void kill() const;
    // Waits for the end. May be called again.
    End wait();

private:
    pid_t process = -1;
    int in = -1;
    int out = -1;
    std::optional<End> end;
};

// Launches in a child and exits there. Gives the launch result, and -1 when the child did not come to its end.
int64_t launchResult();

} // namespace brimlet::test
