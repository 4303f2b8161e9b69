// Links seen from the listener's end, and who names whom when either end dies.
#include "rasteroutput/Broadcaster.h"
#include "rasteroutput/Listener.h"
#include "tests/rasteroutput/Failures.h"

#include <gmock/gmock.h>

#include <optional>

namespace RasterOutputTest
{
    using namespace RasterOutput;

    class MockListener : public Listener
    {
    public:
        MOCK_METHOD(void, HandleBroadcast, (std::uint32_t message, std::uint32_t data), (override));
    };

    class ListenerTest : public testing::Test
    {
    protected:
        ListenerTest()
        {
            for (Broadcaster* const broadcaster : {&a, &*b, &c})
            {
                broadcaster->AddListener(&*listener);
            }
        }

        Broadcaster a;
        std::optional<Broadcaster> b{std::in_place};
        Broadcaster c;
        std::optional<MockListener> listener{std::in_place};
    };

    TEST_F(ListenerTest, DestroyedBroadcasterIsForgottenAndTheOthersStay)
    {
        const Broadcaster* const address = &*b;
        b.reset();
        EXPECT_FALSE(listener->HasBroadcaster(address));
        EXPECT_TRUE(listener->HasBroadcaster(&a));
        EXPECT_TRUE(a.HasListener(&*listener));
    }

    TEST_F(ListenerTest, DestroyedListenerIsForgottenByAll)
    {
        const Listener* const address = &*listener;
        listener.reset();
        EXPECT_FALSE(a.HasListener(address));
        EXPECT_FALSE(b->HasListener(address));
        a.BroadcastMessage(0, 0);
    }

    TEST_F(ListenerTest, StopListeningDetachesBothEnds)
    {
        listener->StopListening();
        EXPECT_FALSE(listener->HasBroadcaster(&a));
        EXPECT_FALSE(a.HasListener(&*listener));
        EXPECT_FALSE(c.HasListener(&*listener));
    }

    TEST_F(ListenerTest, StopListeningGoesBackAsFarAsTheBroadcasterThatIsBusy)
    {
        EXPECT_CALL(*listener, HandleBroadcast(1, 2))
            .WillOnce(
                [this](auto...)
                {
                    EXPECT_THAT(
                        [this] { listener->StopListening(); },
                        FailsWith("Removing listeners mid-broadcast is not supported"));
                });
        b->BroadcastMessage(1, 2);
        EXPECT_FALSE(c.HasListener(&*listener));
        EXPECT_FALSE(listener->HasBroadcaster(&c));
        EXPECT_TRUE(b->HasListener(&*listener));
        EXPECT_TRUE(listener->HasBroadcaster(&*b));
        EXPECT_TRUE(a.HasListener(&*listener));
    }
}
