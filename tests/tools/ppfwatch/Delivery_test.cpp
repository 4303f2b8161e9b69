// Results and sources on their way, stopped at every step.
#include "host/Failure.h"
#include "ppfwatch/Delivery.h"
#include "tests/support/Folder.h"
#include "tests/support/SystemFaults.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <filesystem>
#include <map>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace PpfWatchTest
{
    namespace
    {
        using namespace PpfWatch;
        using ::testing::AnyOf;
        using ::testing::Each;
        using ::testing::ElementsAre;
        using ::testing::IsEmpty;
        using ::testing::StartsWith;
        using TestSupport::Folder;
        namespace fs = std::filesystem;

        class DeliveryTest : public ::testing::Test
        {
        protected:
            DeliveryTest()
            {
                for (const char* const name : {"in", "in/sub", "out", "done", "failed"})
                {
                    fs::create_directory(folder / name);
                }
            }

            /// A delivery, as a new process has one.
            Delivery NewDelivery() const
            {
                return Delivery(
                    {folder / "in", folder / "out", done, folder / "failed"}, "1", [](Level, const std::string&) {});
            }

            /// Drops files, each with its name as its bytes; gives the sources.
            std::vector<Order::Source> Drop(const std::vector<std::string>& names) const
            {
                std::vector<Order::Source> sources;
                for (const std::string& name : names)
                {
                    folder.Write("in/" + name, name);
                    sources.push_back({name, StampOf(AT_FDCWD, folder / "in" + '/' + name).value()});
                }
                return sources;
            }

            /// Converts and delivers the job J, as a watcher does.
            void Run(Delivery& delivery, const std::vector<Order::Source>& sources) const
            {
                const std::string result = delivery.NewResult();
                std::FILE* const file = std::fopen(result.c_str(), "w");
                ASSERT_NE(file, nullptr);
                std::fputs("result", file);
                std::fclose(file);
                delivery.Publish(result, "J");
                delivery.TidyOut();
                delivery.MoveToDone("J", sources);
            }

            Folder folder;
            std::string done = folder / "done";
        };

        TEST_F(DeliveryTest, ResultIsOnTheDiskBeforeASourceMoves)
        {
            const auto sources = Drop({"a", "b"});
            Delivery delivery = NewDelivery();
            TestSupport::TakeCalls();
            Run(delivery, sources);
            EXPECT_THAT(
                TestSupport::TakeCalls(),
                ElementsAre(
                    "fsync of a file", "rename", "fsync of a folder",             // the result
                    "rename", "rename", "fsync of a folder", "fsync of a folder", // the sources
                    "rename", "fsync of a folder"));                              // the job's folder
            EXPECT_EQ(folder.Read("out/J.ppf"), "result");
            EXPECT_THAT(folder.Names("done/J"), ElementsAre("a", "b"));
            EXPECT_THAT(folder.Names("done"), ElementsAre("J"));
            EXPECT_THAT(folder.Names("out"), ElementsAre("J.ppf"));
        }

        TEST_F(DeliveryTest, TakenFolderIsNotTouched)
        {
            fs::create_directory(folder / "done/J");
            fs::create_directory(folder / "done/J-2");
            folder.Write("done/J/a", "older");
            EXPECT_EQ(NewDelivery().MoveToDone("J", Drop({"a"})), folder / "done/J-3");
            EXPECT_EQ(folder.Read("done/J/a"), "older");
        }

        TEST_F(DeliveryTest, TwoNamesOfOneFileAreTwoSources)
        {
            folder.Write("in/a", "same");
            fs::create_hard_link(folder / "in/a", folder / "in/b");
            std::vector<Order::Source> sources;
            for (const char* const name : {"a", "b"})
            {
                sources.push_back({name, StampOf(AT_FDCWD, folder / "in" + '/' + name).value()});
            }
            NewDelivery().MoveToDone("J", sources);
            EXPECT_THAT(folder.Names("done/J"), ElementsAre("a", "b"));
        }

        TEST_F(DeliveryTest, SourceThatHasChangedKeepsAllWhereTheyWere)
        {
            const auto sources = Drop({"a", "b"});
            folder.Write("in/b", "longer than it was");
            EXPECT_THROW(NewDelivery().MoveToDone("J", sources), Delivery::Changed);
            EXPECT_THAT(folder.Names("in"), ElementsAre("a", "b", "sub"));
            EXPECT_THAT(folder.Names("done"), IsEmpty());
        }

        /// Each function fails at each of its calls in turn, and from there on, as if the process had been killed there: it can
        /// tidy up nothing. Then another one starts. Where there is a second file system, what is done goes there.
        TEST_F(DeliveryTest, RunThatIsStoppedAnywhereIsMadeGoodByTheNext)
        {
            struct stat here = {};
            struct stat there = {};
            if (stat(folder.Path().c_str(), &here) == 0 && stat("/dev/shm", &there) == 0 &&
                here.st_dev != there.st_dev && access("/dev/shm", W_OK) == 0)
            {
                done = "/dev/shm/ppfwatch-test-" + std::to_string(getpid());
                fs::create_directory(done);
            }
            using Files = std::map<std::string, std::string>;
            const Files nothing = {{"sub/", ""}};
            const Files whole = {{"a", "a"}, {"b", "b"}, {"sub/", ""}, {"sub/c", "sub/c"}};
            const std::vector<std::string> names = {"a", "b", "sub/c"};
            int stops = 0;
            for (const std::string function :
                 {"rename", "renameat2", "fsync", "unlink", "mkdir", "rmdir", "open", "write", "close"})
            {
                bool hasHappened = true;
                for (int nth = 1; hasHappened; ++nth)
                {
                    SCOPED_TRACE(function + " from call " + std::to_string(nth));
                    const auto sources = Drop(names);
                    {
                        Delivery stopped = NewDelivery();
                        const TestSupport::SystemFault fault(function, EIO, nth, 1000);
                        try
                        {
                            Run(stopped, sources);
                        }
                        catch (const std::exception&)
                        {
                        }
                        hasHappened = fault.HasHappened();
                        stops += hasHappened ? 1 : 0;
                    }
                    EXPECT_THAT(folder.Names("out"), Each(AnyOf("J.ppf", StartsWith("."))));

                    Delivery next = NewDelivery();
                    ASSERT_NO_THROW(next.Recover());
                    const Files left = Folder::FilesIn(folder / "in");
                    if (left != nothing)
                    {
                        ASSERT_EQ(left, whole) << "a part of the job is left";
                        ASSERT_NO_FATAL_FAILURE(Run(next, Drop(names)));
                    }
                    ASSERT_EQ(Folder::FilesIn(done + "/J"), whole);
                    ASSERT_THAT(folder.Names("out"), ElementsAre("J.ppf"));
                    ASSERT_EQ(std::distance(fs::directory_iterator(done), fs::directory_iterator()), 1);
                    ASSERT_EQ(Folder::FilesIn(folder / "in"), nothing);
                    fs::remove_all(done + "/J");
                    fs::remove(folder / "out/J.ppf");
                }
            }
            fs::remove_all(done);
            EXPECT_GT(stops, 10);
        }

        TEST_F(DeliveryTest, NewFileInThePlaceOfAMovedOneIsNotLost)
        {
            fs::create_directories(folder / "done/.ppfwatch-1/J");
            folder.Write("done/.ppfwatch-1/J/a", "converted");
            folder.Write("done/.ppfwatch-1/J/b", "converted, too");
            folder.Write("in/a", "new");
            NewDelivery().Recover();
            EXPECT_EQ(folder.Read("in/a"), "new");
            EXPECT_EQ(folder.Read("in/b"), "converted, too");
            EXPECT_EQ(folder.Read("done/J/a"), "converted");
            EXPECT_THAT(folder.Names("done"), ElementsAre("J"));
        }

        TEST_F(DeliveryTest, SourcesAreTakenBackOnceTheirFolderIsThereAgain)
        {
            fs::create_directories(folder / "done/.ppfwatch-1/J/sub");
            folder.Write("done/.ppfwatch-1/J/sub/a", "moved");
            fs::rename(folder / "in", folder / "away");
            EXPECT_THROW(NewDelivery().TakeBack(), Host::Failure);
            EXPECT_FALSE(fs::exists(folder / "in")) << "a folder that may be a share is not made";
            fs::rename(folder / "away", folder / "in");
            NewDelivery().TakeBack();
            EXPECT_EQ(folder.Read("in/sub/a"), "moved");
            EXPECT_THAT(folder.Names("done"), IsEmpty());
        }
    }
}
