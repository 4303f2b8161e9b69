// What a painter makes of set-up and closing.
#include "rasteroutput/Painter.h"
#include "tests/rasteroutput/Stages.h"

#include <gmock/gmock.h>

namespace RasterOutputTest
{
    using namespace RasterOutput;

    class MockPainter : public Painter
    {
    public:
        MOCK_METHOD(void, InitializePainter, (), (override));
        MOCK_METHOD(void, FinalizePainter, (), (override));
    };

    TEST(Painter, BeginsWithItsParametersInPlaceAndCompletesOnFinalize)
    {
        const HandlerScope<MockPainter, NumberExtractor> handler(
            [](Processor& processor, ClientParameterExtractor& extractor)
            { processor.parameters.height = dynamic_cast<NumberExtractor&>(extractor).number; });
        NumberExtractor extractor;
        extractor.number = 7;
        MockPainter painter;
        const testing::InSequence inThisOrder;
        EXPECT_CALL(painter, InitializePainter).WillOnce([&] { EXPECT_EQ(painter.parameters.height, 7); });
        EXPECT_CALL(painter, FinalizePainter);
        painter.Initialize(ProcessorParameters(), extractor);
        painter.Finalize();
    }
}
