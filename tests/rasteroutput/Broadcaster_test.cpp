// Broadcasts, and what handlers may do in the middle of one. Listener_test.cpp looks at the links from the other end.
#include "rasteroutput/Broadcaster.h"
#include "rasteroutput/Listener.h"
#include "tests/rasteroutput/Failures.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <stdexcept>

namespace RasterOutputTest
{
    using namespace RasterOutput;

    constexpr char MidBroadcast[] = "Removing listeners mid-broadcast is not supported";

    /// Appends its name to a list of who heard something, then does what a test asks for.
    class NamedListener : public Listener
    {
    public:
        NamedListener(char listenerName, std::string& listOfHearers)
            : name(listenerName)
            , heard(listOfHearers)
        {
        }

        void HandleBroadcast(std::uint32_t message, std::uint32_t data) override
        {
            heard += name;
            lastSum = message + data;
            if (reaction)
            {
                reaction();
            }
        }

        std::function<void()> reaction;
        std::uint32_t lastSum = 0;

    private:
        char name;
        std::string& heard;
    };

    class BroadcasterTest : public testing::Test
    {
    protected:
        BroadcasterTest()
        {
            for (NamedListener* const listener : {a.get(), b.get(), c.get()})
            {
                broadcaster->AddListener(listener);
            }
        }

        std::string HeardBroadcast()
        {
            heard.clear();
            broadcaster->BroadcastMessage(40, 2);
            return heard;
        }

        std::string heard;
        std::unique_ptr<Broadcaster> broadcaster = std::make_unique<Broadcaster>();
        std::unique_ptr<NamedListener> a = std::make_unique<NamedListener>('a', heard);
        std::unique_ptr<NamedListener> b = std::make_unique<NamedListener>('b', heard);
        std::unique_ptr<NamedListener> c = std::make_unique<NamedListener>('c', heard);
    };

    TEST_F(BroadcasterTest, ReachesEachListenerOnceInOrderOfAttachment)
    {
        broadcaster->AddListener(a.get());
        EXPECT_EQ(HeardBroadcast(), "abc");
        EXPECT_EQ(c->lastSum, 42u);
        broadcaster->RemoveListener(b.get());
        EXPECT_EQ(HeardBroadcast(), "ac");
        EXPECT_FALSE(b->HasBroadcaster(broadcaster.get()));
        broadcaster->RemoveAllListeners();
        EXPECT_EQ(HeardBroadcast(), "");
        EXPECT_FALSE(a->HasBroadcaster(broadcaster.get()));
        EXPECT_EQ(broadcaster->BroadcastDepth(), 0);
    }

    TEST_F(BroadcasterTest, RemovingAStrangerIsNoFailureUnlessABroadcastRuns)
    {
        NamedListener stranger('s', heard);
        EXPECT_NO_THROW(broadcaster->RemoveListener(&stranger));
        b->reaction = [&] { EXPECT_THAT([&] { broadcaster->RemoveListener(&stranger); }, FailsWith(MidBroadcast)); };
        EXPECT_EQ(HeardBroadcast(), "abc");
    }

    TEST_F(BroadcasterTest, RemovalInsideAHandlerEndsTheBroadcastAndKeepsTheLinks)
    {
        const std::function<void()> removals[] = {
            [&] { broadcaster->RemoveListener(a.get()); },
            [&] { broadcaster->RemoveAllListeners(); },
            [&] { b->StopListening(); },
        };
        for (std::size_t i = 0; i < std::size(removals); ++i)
        {
            SCOPED_TRACE(i);
            b->reaction = removals[i];
            EXPECT_THAT([&] { HeardBroadcast(); }, FailsWith(MidBroadcast));
            EXPECT_EQ(heard, "ab");
            b->reaction = nullptr;
            EXPECT_EQ(HeardBroadcast(), "abc");
        }
    }

    TEST_F(BroadcasterTest, HandlerThatThrowsEndsTheBroadcastButNotTheBroadcaster)
    {
        a->reaction = [] { throw std::runtime_error("enough"); };
        EXPECT_THROW(HeardBroadcast(), std::runtime_error);
        EXPECT_EQ(heard, "a");
        EXPECT_NO_THROW(broadcaster->RemoveListener(a.get()));
        EXPECT_EQ(HeardBroadcast(), "bc");
    }

    TEST_F(BroadcasterTest, NestedBroadcastIsCountedAndCountedBack)
    {
        std::int32_t deepest = 0;
        b->reaction = [&]
        {
            deepest = broadcaster->BroadcastDepth();
            if (deepest == 1)
            {
                broadcaster->BroadcastMessage(0, 0);
            }
        };
        EXPECT_EQ(
            HeardBroadcast(), "ab"
                              "abc"
                              "c");
        EXPECT_EQ(deepest, 2);
        EXPECT_NO_THROW(broadcaster->RemoveListener(b.get()));
    }

    TEST_F(BroadcasterTest, ListenersAddedInAHandlerHearTheNextBroadcastOnly)
    {
        std::vector<std::unique_ptr<NamedListener>> crowd;
        a->reaction = [&]
        {
            for (int i = 0; i < 20; ++i)
            {
                crowd.push_back(std::make_unique<NamedListener>('n', heard));
                broadcaster->AddListener(crowd.back().get());
            }
        };
        EXPECT_EQ(HeardBroadcast(), "abc");
        a->reaction = nullptr;
        EXPECT_EQ(HeardBroadcast(), "abc" + std::string(20, 'n'));
    }

    TEST_F(BroadcasterTest, ListenersDestroyedInAHandlerAreLeftOutAndNobodyElseIs)
    {
        b->reaction = [&]
        {
            a.reset();
            c.reset();
            b->reaction = nullptr;
        };
        EXPECT_EQ(HeardBroadcast(), "ab");
        EXPECT_EQ(HeardBroadcast(), "b");
    }

    TEST_F(BroadcasterTest, BroadcasterDestroyedInAHandlerEndsItsBroadcasts)
    {
        Broadcaster* const address = broadcaster.get();
        b->reaction = [&]
        {
            if (broadcaster->BroadcastDepth() == 1)
            {
                broadcaster->BroadcastMessage(0, 0);
            }
            else
            {
                broadcaster.reset();
            }
        };
        EXPECT_EQ(
            HeardBroadcast(), "ab"
                              "ab");
        EXPECT_FALSE(a->HasBroadcaster(address));
        EXPECT_FALSE(c->HasBroadcaster(address));
    }
}
