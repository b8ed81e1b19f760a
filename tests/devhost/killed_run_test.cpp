// An import killed at any moment: who opens the dealer's database next finds it as before the run or as after
// it. PXTARVO_KILLS says how often; --gtest_random_seed repeats the moments of another time.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <random>
#include <thread>

#include "tests/devhost/host_folder.h"

namespace pxtarvo::tests {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;

/// What the host's messages go into: whoever writes more than there is room for waits.
class MessagePipe {
  public:
    MessagePipe() {
        if (pipe2(ends_.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
        capacity_ = static_cast<std::size_t>(fcntl(writing(), F_SETPIPE_SZ, 1));
    }
    MessagePipe(const MessagePipe&) = delete;
    ~MessagePipe() {
        for (const int end : ends_) close(end);
    }
    int writing() const { return ends_[1]; }
    void leaveRoom(std::size_t size) const {
        const std::string filling(capacity_ - size, '.');
        ASSERT_EQ(write(writing(), filling.data(), filling.size()), static_cast<ssize_t>(filling.size()));
    }
    /// Not to be asked of an empty one.
    std::string content() const {
        std::string all(capacity_, '\0');
        all.resize(static_cast<std::size_t>(read(ends_[0], all.data(), all.size())));
        return all;
    }

  private:
    std::array<int, 2> ends_{};
    std::size_t capacity_;
};

class KilledRun : public ::testing::Test {
  protected:
    void SetUp() override {
        devhost::createHostFile(folder.file("before.db"), hostClock, true);
        before = bytesOf(folder.file("before.db"));
        restore();
        const MessagePipe messages;
        const pid_t process = startImport(messages);
        waitUntil([&] { return std::filesystem::exists(journal); });
        const Clock::time_point begun = Clock::now();
        ASSERT_EQ(ended(process), 0);
        duration = Clock::now() - begun;
        after = bytesOf(database);
        ASSERT_NE(before, after);
        const std::string said = messages.content();
        roomBeforeSuccess = said.rfind('\n', said.size() - 2) + 1;
    }

    void restore() const {
        std::filesystem::remove(journal);
        std::filesystem::copy_file(folder.file("before.db"), database,
                                   std::filesystem::copy_options::overwrite_existing);
    }

    pid_t startImport(const MessagePipe& messages) const {
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, messages.writing(), STDOUT_FILENO);
        const std::string line = "exec '" PXTARVO_HOST_PATH "' import '" + database + "' --file '" +
                                 sample("TARIFA2012.MDB") +
                                 "' --quiet --now '2012-07-25 10:30:00' --supplier 24 --brand SAME";
        const char* const arguments[] = {"sh", "-c", line.c_str(), nullptr};
        pid_t process = 0;
        EXPECT_EQ(
            posix_spawn(&process, "/bin/sh", &actions, nullptr, const_cast<char* const*>(arguments), environ),
            0);
        posix_spawn_file_actions_destroy(&actions);
        return process;
    }

    static int ended(pid_t process) {
        int status = 0;
        EXPECT_EQ(waitpid(process, &status, 0), process);
        return status;
    }

    template <class Condition>
    static void waitUntil(Condition condition) {
        const Clock::time_point latest = Clock::now() + std::chrono::seconds(60);
        while (!condition()) {
            ASSERT_LT(Clock::now(), latest);
            std::this_thread::sleep_for(microseconds(50));
        }
    }

    void waitFor(Clock::duration longest) {
        std::this_thread::sleep_for(
            microseconds(std::uniform_int_distribution<long>(0, longest / microseconds(1))(random)));
    }

    TemporaryFolder folder{std::filesystem::temp_directory_path()};  // a disk
    const std::string database = folder.file("dealer.db");
    const std::string journal = database + "-journal";  ///< is there while the transaction is open
    std::string before;
    std::string after;
    Clock::duration duration{};         ///< of the transaction, at most
    std::size_t roomBeforeSuccess = 0;  ///< for the messages before the last
    std::mt19937 random;
};

TEST_F(KilledRun, LeavesAllOrNothing) {
    const char* const told = std::getenv("PXTARVO_KILLS");
    const int kills = told ? std::atoi(told) : 36;
    int seed = ::testing::UnitTest::GetInstance()->random_seed();
    if (seed == 0) seed = static_cast<int>(std::random_device()() % 99999) + 1;
    random.seed(static_cast<unsigned>(seed));
    SCOPED_TRACE("--gtest_random_seed=" + std::to_string(seed));

    int asBefore = 0;
    int inTransaction = 0;
    for (int kill = 0; kill < kills; ++kill) {
        restore();
        const auto untouched = std::filesystem::last_write_time(database);
        const MessagePipe messages;
        messages.leaveRoom(roomBeforeSuccess);  // a run that is done waits to say so
        const pid_t process = startImport(messages);
        // One in eight from the start of the program on, most at any moment of the transaction, two while the
        // pages are written, one behind the commit.
        const int kind = kill % 8;
        if (kind > 0) waitUntil([&] { return std::filesystem::exists(journal); });
        const Clock::time_point start = Clock::now();
        if (kind < 5) {
            waitFor(duration);
        } else if (kind < 7) {
            waitUntil([&] { return std::filesystem::last_write_time(database) != untouched; });
            waitFor(std::chrono::milliseconds(4));
        } else {
            waitUntil([&] { return !std::filesystem::exists(journal); });
        }
        ::kill(process, SIGKILL);
        const Clock::duration lived = Clock::now() - start;
        ASSERT_TRUE(WIFSIGNALED(ended(process))) << "kill " << kill;

        inTransaction += std::filesystem::exists(journal);
        devhost::openHostFile(database, hostClock)->Execute("SELECT count(*) FROM Art", adOptionUnspecified);
        const std::string left = bytesOf(database);
        ASSERT_TRUE(left == before || left == after)
            << "kill " << kill << " after " << lived / microseconds(1) << " microseconds";
        asBefore += left == before;
        if (left == after && kind > 0) duration = std::min(duration, lived);
    }
    std::printf("%d kills, seed %d: %d within the transaction, %d left all as before, %d as after\n", kills,
                seed, inTransaction, asBefore, kills - asBefore);
    EXPECT_GT(inTransaction, kills / 2);
    EXPECT_GT(asBefore, 0);
    EXPECT_LT(asBefore, kills);
}

}  // namespace

}  // namespace pxtarvo::tests
