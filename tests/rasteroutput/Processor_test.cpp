// A stage's entry points: which handler gets what, and how the counters move.
#include "rasteroutput/Processor.h"
#include "rasteroutput/RasterBandRef.h"
#include "rasteroutput/ScanLineRef.h"
#include "tests/rasteroutput/Chunks.h"
#include "tests/rasteroutput/Failures.h"
#include "tests/rasteroutput/Stages.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace RasterOutputTest
{
    using namespace RasterOutput;

    using testing::InSequence;
    using testing::Throw;

    class MockStage : public BareStage
    {
    public:
        MOCK_METHOD(void, InitializeProcess, (), (override));
        MOCK_METHOD(void, FinalizeProcess, (), (override));
        MOCK_METHOD(void, AfterInitialize, (const ProcessorParameters&, ClientParameterExtractor&), (override));
        MOCK_METHOD(void, ProcessScanLine8Bit, (const ScanLineRef&), (override));
        MOCK_METHOD(void, ProcessTile8Bit, (const RawChunkRef&), (override));
    };

    /// A band whose rows lie 8 bytes apart.
    struct PaddedBand : RasterBandRef
    {
        std::uint32_t GetRowStride() const override { return 8; }
    };

    void ExpectCounters(const BareStage& stage, std::int32_t x, std::int32_t y, std::int32_t column, std::int32_t rows)
    {
        EXPECT_EQ(stage.currentX, x);
        EXPECT_EQ(stage.currentY, y);
        EXPECT_EQ(stage.tileColumn, column);
        EXPECT_EQ(stage.rowCount, rows);
    }

    class ProcessorTest : public testing::Test
    {
    protected:
        Bytes bytes = Bytes(64);
        testing::StrictMock<MockStage> stage;
        BareStage bare;
    };

    TEST_F(ProcessorTest, InitializeTakesTheDescriptionThenTheClientsParametersThenSetsUp)
    {
        static bool extracted;
        extracted = false;
        const HandlerScope<testing::StrictMock<MockStage>, NumberExtractor> handler(
            [](Processor& processor, ClientParameterExtractor&) { extracted = processor.parameters.width == 300; });
        NumberExtractor extractor;
        ProcessorParameters description;
        description.width = 300;
        description.auxiliaryRecords.resize(2);
        {
            const InSequence inThisOrder;
            EXPECT_CALL(stage, InitializeProcess).WillOnce([] { EXPECT_TRUE(extracted); });
            EXPECT_CALL(stage, AfterInitialize(testing::Ref(description), testing::Ref(extractor)));
            EXPECT_CALL(stage, FinalizeProcess);
        }
        stage.currentX = stage.currentY = stage.tileColumn = stage.rowCount = 9;
        stage.Initialize(description, extractor);
        ExpectCounters(stage, 0, 0, 0, 0);
        EXPECT_EQ(stage.parameters.auxiliaryRecords.size(), 2u);
        stage.Finalize();
    }

    TEST_F(ProcessorTest, InitializeOfAnUnknownPairFailsBeforeTheStageIsSetUp)
    {
        NumberExtractor extractor;
        ProcessorParameters description;
        description.width = 300;
        EXPECT_THAT(
            [&] { stage.Initialize(description, extractor); },
            testing::ThrowsMessage<std::runtime_error>("Function not found"));
        EXPECT_EQ(stage.parameters.width, 300);
    }

    TEST_F(ProcessorTest, ScanLineIsCountedOnceItsHandlerHasReturned)
    {
        const auto line = PlanarChunk<ScanLineRef>(8, 64, 1, {&bytes});
        EXPECT_CALL(stage, ProcessScanLine8Bit(testing::Ref(line)))
            .WillOnce(testing::Return())
            .WillOnce(Throw(std::runtime_error("full")));
        stage.ProcessScanLine(line);
        ExpectCounters(stage, 0, 1, 0, 1);
        EXPECT_THROW(stage.ProcessScanLine(line), std::runtime_error);
        ExpectCounters(stage, 0, 1, 0, 1);
    }

    TEST_F(ProcessorTest, RefusesWhatItHasNoHandlerFor)
    {
        const auto expectRefusals = [](const std::string& operation, auto process)
        {
            EXPECT_THAT([&] { process(1); }, FailsWith("1 bit data is not supported by this painter process"));
            EXPECT_THAT([&] { process(8); }, FailsWith("8 bit data is not supported by this painter process"));
            const std::string text = "Unsupported bit depth in Processor::" + operation;
            EXPECT_THAT([&] { process(0); }, FailsWith(text.c_str()));
            EXPECT_THAT([&] { process(16); }, FailsWith(text.c_str()));
        };
        expectRefusals(
            "ProcessScanLine",
            [&](std::uint32_t bits) { bare.ProcessScanLine(PlanarChunk<ScanLineRef>(bits, 8, 1, {&bytes})); });
        expectRefusals(
            "ProcessRasterBand",
            [&](std::uint32_t bits) { bare.ProcessRasterBand(PlanarChunk<RasterBandRef>(bits, 8, 2, {&bytes})); });
        expectRefusals(
            "ProcessTile",
            [&](std::uint32_t bits) { bare.ProcessTile(PlanarChunk<RawChunkRef>(bits, 8, 2, {&bytes})); });
        ExpectCounters(bare, 0, 0, 0, 0);
    }

    TEST_F(ProcessorTest, BandReachesAStageRowByRowAndIsCountedOnce)
    {
        auto band = PlanarChunk<PaddedBand>(8, 5, 3, {&bytes});
        band.firstByteOffset = 2;
        std::vector<std::ptrdiff_t> rowStarts;
        EXPECT_CALL(stage, ProcessScanLine8Bit)
            .Times(3)
            .WillRepeatedly(
                [&](const ScanLineRef& row)
                {
                    EXPECT_EQ(row.GetHeight(), 1);
                    EXPECT_EQ(row.GetWidth(), 5);
                    EXPECT_EQ(row[0].size(), 5u);
                    rowStarts.push_back(row[0].begin - bytes.data());
                });
        stage.ProcessRasterBand(band);
        EXPECT_THAT(rowStarts, testing::ElementsAre(2, 10, 18));
        ExpectCounters(stage, 0, 3, 0, 3);

        band.height = 0;
        stage.ProcessRasterBand(band);
        ExpectCounters(stage, 0, 3, 0, 3);
    }

    TEST_F(ProcessorTest, HandlerThatMovesItsRowLeavesTheBandsNextOnesInPlace)
    {
        std::vector<std::ptrdiff_t> rowStarts;
        EXPECT_CALL(stage, ProcessScanLine8Bit)
            .Times(2)
            .WillRepeatedly(
                [&](const ScanLineRef& row)
                {
                    rowStarts.push_back(row[0].begin - bytes.data());
                    const_cast<ScanLineRef&>(row)[0].SetRange(bytes.data() + 40, bytes.data() + 41);
                });
        stage.ProcessRasterBand(PlanarChunk<RasterBandRef>(8, 5, 2, {&bytes}));
        EXPECT_THAT(rowStarts, testing::ElementsAre(0, 5));
    }

    TEST_F(ProcessorTest, RowsBeforeAFailedOneStayCounted)
    {
        EXPECT_CALL(stage, ProcessScanLine8Bit).WillOnce(testing::Return()).WillOnce(Throw(std::runtime_error("full")));
        const auto band = PlanarChunk<RasterBandRef>(8, 5, 3, {&bytes});
        EXPECT_THROW(stage.ProcessRasterBand(band), std::runtime_error);
        ExpectCounters(stage, 0, 1, 0, 1);
    }

    TEST_F(ProcessorTest, TileThatReachesTheWidthEndsItsRow)
    {
        stage.parameters.width = 250;
        EXPECT_CALL(stage, ProcessTile8Bit).Times(3);
        const auto tile = PlanarChunk<RawChunkRef>(8, 100, 40, {&bytes});
        const auto lastTile = PlanarChunk<RawChunkRef>(8, 100, 30, {&bytes});
        stage.ProcessTile(tile);
        stage.ProcessTile(tile);
        ExpectCounters(stage, 200, 0, 2, 0);
        stage.ProcessTile(lastTile);
        ExpectCounters(stage, 0, 30, 0, 1);
    }
}
