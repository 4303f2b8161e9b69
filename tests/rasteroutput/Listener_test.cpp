// Links seen from the listener's end.
#include "rasteroutput/Broadcaster.h"
#include "rasteroutput/Listener.h"
#include "tests/rasteroutput/Failures.h"

#include <gmock/gmock.h>

namespace RasterOutputTest
{
    using namespace RasterOutput;

    class MockListener : public Listener
    {
    public:
        MOCK_METHOD(void, HandleBroadcast, (std::uint32_t message, std::uint32_t data), (override));
    };

    TEST(Listener, StopListeningGoesBackAsFarAsTheBroadcasterThatIsBusy)
    {
        Broadcaster a, b, c;
        MockListener listener;
        for (Broadcaster* const broadcaster : {&a, &b, &c})
        {
            broadcaster->AddListener(&listener);
        }
        EXPECT_CALL(listener, HandleBroadcast(1, 2))
            .WillOnce(
                [&](auto...) {
                    EXPECT_THAT(
                        [&] { listener.StopListening(); },
                        FailsWith("Removing listeners mid-broadcast is not supported"));
                });
        b.BroadcastMessage(1, 2);
        EXPECT_FALSE(c.HasListener(&listener));
        EXPECT_FALSE(listener.HasBroadcaster(&c));
        EXPECT_TRUE(b.HasListener(&listener));
        EXPECT_TRUE(listener.HasBroadcaster(&b));
        EXPECT_TRUE(a.HasListener(&listener));

        listener.StopListening();
        EXPECT_FALSE(b.HasListener(&listener));
        EXPECT_FALSE(a.HasListener(&listener));
        EXPECT_FALSE(listener.HasBroadcaster(&a));
    }
}
