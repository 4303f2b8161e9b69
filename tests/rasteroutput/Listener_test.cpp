// Links seen from the listener's end, and who names whom when either end dies.
#include "rasteroutput/Listener.h"

#include "Failures.h"
#include "rasteroutput/Broadcaster.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>

namespace RasterOutput
{
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
            for (Broadcaster* const broadcaster : {&a, b.get(), &c})
            {
                broadcaster->AddListener(listener.get());
            }
        }

        Broadcaster a;
        std::unique_ptr<Broadcaster> b = std::make_unique<Broadcaster>();
        Broadcaster c;
        std::unique_ptr<MockListener> listener = std::make_unique<MockListener>();
    };

    TEST_F(ListenerTest, DestroyedBroadcasterIsForgottenAndTheOthersStay)
    {
        const Broadcaster* const address = b.get();
        b.reset();
        EXPECT_FALSE(listener->HasBroadcaster(address));
        EXPECT_TRUE(listener->HasBroadcaster(&a));
        EXPECT_TRUE(a.HasListener(listener.get()));
    }

    TEST_F(ListenerTest, DestroyedListenerIsForgottenByAll)
    {
        const Listener* const address = listener.get();
        listener.reset();
        EXPECT_FALSE(a.HasListener(address));
        EXPECT_FALSE(b->HasListener(address));
        a.BroadcastMessage(0, 0);
    }

    TEST_F(ListenerTest, StopListeningDetachesBothEnds)
    {
        listener->StopListening();
        EXPECT_FALSE(listener->HasBroadcaster(&a));
        EXPECT_FALSE(a.HasListener(listener.get()));
        EXPECT_FALSE(c.HasListener(listener.get()));
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
        EXPECT_FALSE(c.HasListener(listener.get()));
        EXPECT_FALSE(listener->HasBroadcaster(&c));
        EXPECT_TRUE(b->HasListener(listener.get()));
        EXPECT_TRUE(listener->HasBroadcaster(b.get()));
        EXPECT_TRUE(a.HasListener(listener.get()));
    }
}
