/**
 * @file brimlet.hpp
 * Brimlet for C++17, over brimlet.h. It is the one header that a client includes; the folder beside it holds its parts.
 *
 *     brimlet::Session session("cache");         // launches, and exits at the end of the scope
 *     brimlet::require(session.addUsers(R"({"D":{"items":[{"id":7,"name":"Anna"}]}})"));
 *     if (const auto user = session.getUser(7))  // releases itself
 *         if (user->name())                      // empty if the user has no name
 *             show(*user->name());               // a view of the record's own text
 *
 * 1. Every function of brimlet.h that needs a launched library is a member of Session by the same name, so none can be
 *    called too early or too late. FlatRecords.h lists the keys of the documents.
 * 2. Texts are passed as UTF-16 or as UTF-8, which is converted. They are returned as views of UTF-16.
 * 3. Records, arrays and texts that are returned own themselves: they can be moved but not copied, release themselves
 *    and outlive the session. What you read through one of them is a view, and lives as long as its owner.
 * 4. Several threads may use one Session: a call waits until the one before it returns. An owner has no such lock.
 */
#ifndef BRIMLET_HPP
#define BRIMLET_HPP

#include "brimlet.h"

#include "brimlet/calls.hpp"
#include "brimlet/runtime/errors.hpp"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#ifndef _WIN32
#include <unistd.h>
#endif

/** Brimlet for C++17. */
namespace brimlet {

namespace detail {

// The one launch that a process can have at a time, with its thread and its working directory.
class Host
{
public:
    // Never destroyed: a Session that is a static object may ask for it at the very end of the process.
    static Host &ofProcess()
    {
        static Host &host = *new Host;
        return host;
    }

    Host(const Host &) = delete;
    Host &operator=(const Host &) = delete;

    void claim()
    {
        if (isClaimed.exchange(true))
            throw AlreadyLaunched();
    }
    void disclaim() { isClaimed = false; }

    // Ends a launch that a session gave up. Behind it nothing of this process works on a file.
    void makeReady(std::chrono::milliseconds timeout)
    {
        endForgotten(timeout);
        if (thread.joinable() || ::getState() != BRIMLET_STATE_NONE)
            throw AlreadyLaunched(); // by others, or by the process that forked this one
    }

    LaunchResult launch(const std::filesystem::path &directory, std::chrono::milliseconds timeout)
    {
        before = std::filesystem::current_path();
        std::filesystem::current_path(directory);
        try {
            hasEnded = false;
            process = thisProcess();
            thread = std::thread([this] {
                ::launchCache();
                hasEnded = true;
            });
        } catch (...) {
            goBack();
            throw;
        }
        waitUntilRunning(timeout);
        return static_cast<LaunchResult>(::getLaunchCacheResult());
    }

    // Does nothing where the launch has ended with the process already, and in a forked child.
    void exit()
    {
        if (!hasThread())
            return;
        ::exitCache();
        thread.join();
    }

private:
    Host() = default;

    static int thisProcess()
    {
#ifdef _WIN32
        return 0; // no process is forked there
#else
        return ::getpid();
#endif
    }

    // A forked child has no copy of the thread. It would wait for its end for good, and the file is its parent's.
    bool hasThread() const { return thread.joinable() && process == thisProcess(); }

    // Registered handlers run last in, first out, and the static objects of Qt go in the same order. The library cannot
    // exit without those, so this is to be called when the launch has made them.
    static void endWithProcess()
    {
        std::atexit([] {
            try {
                // In parentheses, since windows.h may define a macro max.
                ofProcess().endForgotten((std::chrono::milliseconds::max)());
            } catch (const std::exception &) { // it came back by itself
            }
        });
    }

    void endForgotten(std::chrono::milliseconds timeout)
    {
        if (hasThread()) {
            waitUntilRunning(timeout);
            exit();
        }
    }

    // Polls, since the state is the only sign of life. An exit before the event loop runs would be missed.
    void waitUntilRunning(std::chrono::milliseconds timeout)
    {
        const auto start = std::chrono::steady_clock::now();
        while (::getState() != BRIMLET_STATE_RUNNING) {
            if (hasEnded) {
                thread.join();
                goBack();
                throw LaunchEnded();
            }
            const auto passed = std::chrono::steady_clock::now() - start;
            if (std::chrono::duration_cast<std::chrono::milliseconds>(passed) >= timeout) { // no timeout overflows
                endWithProcess();
                throw LaunchTimedOut();
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        if (!std::exchange(hasRun, true))
            endWithProcess();
        goBack();
    }

    // Once a launch: what the client makes the working directory later is its own business.
    void goBack()
    {
        std::error_code ignored; // the directory may be gone, and nothing here needs it
        if (!before.empty())
            std::filesystem::current_path(before, ignored);
        before.clear();
    }

    std::atomic<bool> isClaimed{false};
    std::atomic<bool> hasEnded{false};
    bool hasRun = false; // some launch has
    int process = 0;     // the one whose thread it is
    std::thread thread;
    std::filesystem::path before;
};

class Claim
{
public:
    Claim() { Host::ofProcess().claim(); }
    ~Claim() { Host::ofProcess().disclaim(); }
    Claim(const Claim &) = delete;
    Claim &operator=(const Claim &) = delete;
};

// Keeps the file that a launch may replace, with its journals. While the launch runs they have second names; where it
// has replaced the file, these become names with the time, and the newest few stay.
class DamagedFiles
{
public:
    // With 0 it touches nothing.
    explicit DamagedFiles(unsigned count) : keptCount(count) {}

    // To be called before a launch. What a launch that nobody saw to its end has left behind is settled first.
    void hold(const std::filesystem::path &directory)
    {
        if (keptCount == 0)
            return;
        file = std::filesystem::canonical(directory) / "CacheDb";
        held = with(file, ".before-launch");
        isHolding = true;
        try {
            settle(false);
        } catch (const std::filesystem::filesystem_error &error) {
            isHolding = false;
            if (!isDenied(error.code()))
                throw;
            return;
        }
        if (!isHolding && hasContent())
            link();
    }

    // To be called after it. Gives the name that a file that was replaced is kept under.
    std::optional<std::filesystem::path> settle(bool isUsable)
    {
        if (!isHolding)
            return std::nullopt;
        std::error_code ignored; // there may be no file
        if (isUsable || !isThere(held) || std::filesystem::equivalent(held, file, ignored)) {
            drop();
            return std::nullopt;
        }
        const std::filesystem::path kept = freeName();
        for (const char *part : parts) {
            std::error_code error;
            if (isThere(with(held, part)))
                std::filesystem::rename(with(held, part), with(kept, part), error);
            if (error)
                throw notKept(with(held, part), with(kept, part), error);
        }
        isHolding = false;
        removeOlderThan(kept);
        return kept;
    }

    // To be called after the exit, since Windows removes no name of an open file.
    void drop()
    {
        if (!isHolding)
            return;
        std::error_code ignored; // the next session tries again
        for (const char *part : parts)
            if (isThere(with(held, part)))
                std::filesystem::remove(with(held, part), ignored);
        isHolding = isThere(held);
    }

private:
    // The file last: a journal without its file is one of a launch that did not begin.
    static constexpr const char *parts[] = {"-journal", "-wal", ""};

    static std::filesystem::path with(std::filesystem::path name, const char *part) { return name += part; }

    static bool isThere(const std::filesystem::path &name)
    {
        std::error_code ignored;
        return std::filesystem::is_regular_file(std::filesystem::symlink_status(name, ignored));
    }

    static std::filesystem::filesystem_error notKept(const std::filesystem::path &from, const std::filesystem::path &to,
                                                     const std::error_code &error)
    {
        return {"a file that its launch may replace cannot be kept (keepDamaged = 0 launches without)", from, to,
                error};
    }

    // In a directory that may not be changed a launch cannot replace the file, so nothing has to be kept.
    static bool isDenied(const std::error_code &error)
    {
        return error == std::errc::permission_denied || error == std::errc::operation_not_permitted
            || error == std::errc::read_only_file_system;
    }

    // A launch without recovery leaves an empty file, which must not push out those that hold something.
    bool hasContent() const
    {
        std::error_code ignored;
        return isThere(file) && std::any_of(std::begin(parts), std::end(parts), [&](const char *part) {
                   return isThere(with(file, part)) && std::filesystem::file_size(with(file, part), ignored) > 0;
               });
    }

    // A link opens no file, so the process loses no lock on it. Not every file system has links.
    void link()
    {
        isHolding = true;
        for (const char *part : parts) {
            const std::filesystem::path from = with(file, part);
            const std::filesystem::path to = with(held, part);
            std::error_code linkError;
            std::error_code copyError;
            if (!isThere(from))
                continue;
            std::filesystem::create_hard_link(from, to, linkError);
            if (!linkError || std::filesystem::copy_file(from, to, copyError))
                continue;
            const bool isFolderClosed = isDenied(linkError) && isDenied(copyError) && !std::ofstream(to);
            drop();
            if (isFolderClosed)
                return;
            throw notKept(from, to, copyError);
        }
    }

    std::filesystem::path freeName() const
    {
        const auto isFree = [](const std::filesystem::path &name) {
            return std::none_of(std::begin(parts), std::end(parts), [&](const char *part) {
                std::error_code ignored;
                return exists(std::filesystem::symlink_status(with(name, part), ignored));
            });
        };
        auto time = std::chrono::time_point_cast<std::chrono::milliseconds>(std::chrono::system_clock::now());
        while (!isFree(nameAt(time)))
            time += std::chrono::milliseconds(1);
        return nameAt(time);
    }

    std::filesystem::path
    nameAt(std::chrono::time_point<std::chrono::system_clock, std::chrono::milliseconds> time) const
    {
        const auto milliseconds = time.time_since_epoch().count();
        const auto seconds = static_cast<std::time_t>(milliseconds / 1000);
        std::tm utc{};
#ifdef _WIN32
        gmtime_s(&utc, &seconds);
#else
        gmtime_r(&seconds, &utc);
#endif
        char text[sizeof ".damaged-20261122T064500."];
        std::strftime(text, sizeof text, ".damaged-%Y%m%dT%H%M%S.", &utc);
        return with(with(file, text), (std::to_string(1000 + milliseconds % 1000).substr(1) + "Z").c_str());
    }

    static bool isKeptName(const std::filesystem::path &name)
    {
        constexpr std::string_view shape = "CacheDb.damaged-00000000T000000.000Z"; // any digit for a 0
        const auto &text = name.native();
        return std::equal(shape.begin(), shape.end(), text.begin(), text.end(), [](char expected, auto unit) {
            return expected == '0' ? unit >= '0' && unit <= '9' : unit == expected;
        });
    }

    // The newest one stays whatever the clock said to the others.
    void removeOlderThan(const std::filesystem::path &newest) const
    {
        std::error_code ignored; // what cannot be listed or removed stays
        std::vector<std::filesystem::path> others;
        for (const auto &entry : std::filesystem::directory_iterator(file.parent_path(), ignored))
            if (isKeptName(entry.path().filename()) && isThere(entry.path()) && entry.path() != newest)
                others.push_back(entry.path());
        std::sort(others.rbegin(), others.rend()); // the newest first
        for (size_t i = keptCount - 1; i < others.size(); ++i)
            for (const char *part : parts)
                std::filesystem::remove(with(others[i], part), ignored);
    }

    unsigned keptCount;
    bool isHolding = false; // there are second names, or may be
    std::filesystem::path file;
    std::filesystem::path held;
};

} // namespace detail

/** How a Session is to launch. */
struct LaunchOptions
{
    std::chrono::milliseconds timeout{10000}; /**< How long each launch may take. */
    bool recover = true; /**< Whether to launch a second time, without the file, where the first replaced the file. */
    unsigned keepDamaged = 3; /**< How many files that launches have replaced are kept; 0 keeps none, removes none. */
};

/** How the launches of a Session went. */
struct LaunchReport
{
    LaunchResult first = LaunchResult::None;   /**< The first launch. */
    std::optional<LaunchResult> second;        /**< The second launch, where recovery took one. */
    std::optional<std::filesystem::path> kept; /**< Where the file is that the first launch replaced. */

    /** The launch that the session runs on. */
    LaunchResult last() const { return second.value_or(first); }
};

/**
 * The library, from its launch to its exit. One at a time in a process.
 *
 * The library keeps its file in the working directory at launch, so a session makes its directory the working directory
 * of the whole process while it launches, and goes back as soon as the library runs. Other threads should not depend on
 * the working directory meanwhile.
 *
 * A file that fails its checks is replaced at launch by one that cannot be used. A session keeps what was there, with
 * its journals, as "CacheDb.damaged-20261122T064500.123Z", the time in UTC; of these the newest few stay. Unless it is
 * told not to, it then recovers: it exits, removes the file and its journal, and launches again. Both results and the
 * name stand in report(). Until the launch is over, "CacheDb.before-launch" is a second name of the file. A process
 * that dies meanwhile leaves it behind; the next session removes it, or keeps it where it is the only one.
 *
 * A session that nobody has destroyed when the process ends, a global one for instance, exits then. In a child that is
 * forked while it lives it must not be used, and neither its destructor nor the end of the process does anything there.
 */
class Session : public Calls
{
public:
    /**
     * Launches the library on a thread of its own and waits until it runs. Throws
     *
     * - AlreadyLaunched where another session lives or another part of the process has launched the library,
     * - LaunchTimedOut where a launch takes too long. It goes on behind the scenes, and the working directory stays
     *   where it is until the next Session, or the end of the process, has waited for it and ended it,
     * - LaunchEnded where launchCache comes back by itself,
     * - std::filesystem::filesystem_error where the directory cannot be entered, or its file not be kept or removed.
     */
    explicit Session(const std::filesystem::path &directory = ".", LaunchOptions options = {})
        : damaged(options.keepDamaged)
    {
        detail::Host &host = detail::Host::ofProcess();
        host.makeReady(options.timeout);
        damaged.hold(directory);
        launches.first = host.launch(directory, options.timeout);
        launches.kept = damaged.settle(isUsable());
        if (options.recover && isReplaced(launches.first)) {
            host.exit();
            std::filesystem::remove(directory / "CacheDb");
            std::filesystem::remove(directory / "CacheDb-journal");
            launches.second = host.launch(directory, options.timeout);
        }
    }

    /** Exits and waits for the launch thread. No other thread may be in a call. */
    ~Session()
    {
        detail::Host::ofProcess().exit();
        damaged.drop();
    }

    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    /** How the launches went. */
    const LaunchReport &report() const { return launches; }
    /** Whether the store can be read and written. */
    bool isUsable() const { return brimlet::isUsable(launches.last()); }
    /** Gets the state of the library. */
    State state() const { return static_cast<State>(::getState()); }
    /** Gets the result of the launch. */
    LaunchResult launchResult() const { return static_cast<LaunchResult>(::getLaunchCacheResult()); }

private:
    detail::Claim claim;
    detail::DamagedFiles damaged;
    LaunchReport launches;
};

} // namespace brimlet

#endif
