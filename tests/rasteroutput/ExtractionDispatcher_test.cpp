// The way from a pair of concrete types to its handler.
#include "rasteroutput/ExtractionDispatcher.h"
#include "tests/rasteroutput/Stages.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace RasterOutputTest
{
    using namespace RasterOutput;

    namespace
    {
        struct OtherExtractor : ClientParameterExtractor
        {
        };

        struct DerivedStage : BareStage
        {
        };

        void TakeNothing(Processor&, ClientParameterExtractor&) {}

        void TakeNumber(Processor&, ClientParameterExtractor& extractor)
        {
            dynamic_cast<NumberExtractor&>(extractor).number = -1;
        }

        auto FindsNoHandler()
        {
            return testing::ThrowsMessage<std::runtime_error>("Function not found");
        }
    }

    class ExtractionDispatcherTest : public testing::Test
    {
    protected:
        ExtractionDispatcher& dispatcher = ExtractionDispatcher::Instance();
        HandlerScope<BareStage, NumberExtractor> registered{&TakeNothing};
        BareStage stage;
        NumberExtractor extractor;
    };

    TEST_F(ExtractionDispatcherTest, SecondAddReplacesTheHandlerAndOneRemoveTakesItAway)
    {
        dispatcher.Add<BareStage, NumberExtractor>(&TakeNumber);
        dispatcher.Go(stage, extractor);
        EXPECT_EQ(extractor.number, -1);
        dispatcher.Remove<BareStage, NumberExtractor>();
        EXPECT_THAT([this] { dispatcher.Go(stage, extractor); }, FindsNoHandler());
        EXPECT_NO_THROW((dispatcher.Remove<BareStage, NumberExtractor>()));
    }

    TEST_F(ExtractionDispatcherTest, MatchesExactTypesOnly)
    {
        DerivedStage derived;
        OtherExtractor other;
        EXPECT_THAT([&] { dispatcher.Go(derived, extractor); }, FindsNoHandler());
        EXPECT_THAT([&] { dispatcher.Go(stage, other); }, FindsNoHandler());
        const HandlerScope<DerivedStage, OtherExtractor> more(&TakeNothing);
        EXPECT_NO_THROW(dispatcher.Go(derived, other));
        EXPECT_THAT([&] { dispatcher.Go(stage, other); }, FindsNoHandler());
    }
}
