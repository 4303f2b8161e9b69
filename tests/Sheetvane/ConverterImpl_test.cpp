// A converter's job from its construction to its end, and what it enters in the framework's tables meanwhile.
#include "cip3output/CIP3Painter.h"
#include "cip3output/CIP3ParameterExtractor.h"
#include "frontend/ConverterImpl.h"
#include "rasteroutput/Exception.h"
#include "rasteroutput/PainterRegistry.h"
#include "tests/support/Allocations.h"
#include "tests/support/Failures.h"

#include <Sheetvane/SheetvaneConverter.h>

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <stdexcept>

namespace SheetvaneTest
{
    using Sheetvane::ConverterImpl;

    namespace
    {
        int initialisations = 0;
        bool initialisationSucceeds = true;
    }

    // Stands in front of the object library's own.
    extern "C" bool __KX_INITIALIZATION_FUNCTION_kxtypes__()
    {
        ++initialisations;
        return initialisationSucceeds;
    }

    TEST(ConverterImpl, ANewJobIsEmptyAndHasItsDefaults)
    {
        const ConverterImpl job;
        EXPECT_TRUE(job.sheets.empty());
        EXPECT_EQ(job.processorParameters.width, 300);
        EXPECT_EQ(job.processorParameters.height, 300);
        EXPECT_EQ(job.processorParameters.xResolution, 72.0);
        EXPECT_EQ(job.processorParameters.yResolution, 72.0);
        EXPECT_EQ(job.processorParameters.bitsPerComponent, 8u);
        EXPECT_EQ(job.processorParameters.planar, 1u);
        EXPECT_EQ(job.painterParameters.filePath, L"");
        EXPECT_EQ(job.painterParameters.sheetCount, 1u);
        EXPECT_EQ(job.painterParameters.compression, 1);
        EXPECT_EQ(job.painterParameters.encoding, 2);
        EXPECT_EQ(job.surfaceTemplate.side, 0);
    }

    TEST(ConverterImpl, SecondOneIsRefusedAndTheFirstStaysRegistered)
    {
        auto first = std::make_unique<ConverterImpl>();
        EXPECT_EQ(
            TestSupport::FailureOf<RasterOutput::Exception>([] { const ConverterImpl second; }),
            "CIP3Painter painter identifier already registered");
        EXPECT_NE(RasterOutput::MakePainter("CIP3Painter"), nullptr);
        first.reset();
        EXPECT_NO_THROW(ConverterImpl());
    }

    TEST(ConverterImpl, ItsEndLeavesNoEntryBehind)
    {
        auto job = std::make_unique<ConverterImpl>();
        const boost::shared_ptr<RasterOutput::Painter> painter = RasterOutput::MakePainter("CIP3Painter");
        job.reset();
        EXPECT_THROW(RasterOutput::MakePainter("CIP3Painter"), RasterOutput::Exception);
        Sheetvane::CIP3ParameterExtractor extractor;
        EXPECT_THROW(painter->Initialize({}, extractor), std::runtime_error);
    }

    TEST(ConverterImpl, AllocationThatFailsLeavesNothingRegistered)
    {
        bool constructed = false;
        long count = 0;
        while (!constructed && count < 1000)
        {
            TestSupport::FailOneAllocation(++count);
            try
            {
                const ConverterImpl job;
                constructed = true;
            }
            catch (const std::bad_alloc&)
            {
                EXPECT_THROW(RasterOutput::MakePainter("CIP3Painter"), RasterOutput::Exception) << count;
            }
            TestSupport::AllowAllocations();
        }
        EXPECT_TRUE(constructed);
    }

    TEST(Initialisation, FailedOneIsTriedAgainAndASuccessfulOneIsNot)
    {
        initialisations = 0;
        initialisationSucceeds = false;
        EXPECT_FALSE(__KX_INITIALIZATION_FUNCTION_Sheetvane__());
        {
            const Sheetvane::SheetvaneConverter converter;
        }
        EXPECT_EQ(initialisations, 2);
        initialisationSucceeds = true;
        EXPECT_TRUE(__KX_INITIALIZATION_FUNCTION_Sheetvane__());
        EXPECT_TRUE(__KX_INITIALIZATION_FUNCTION_Sheetvane__());
        {
            const Sheetvane::SheetvaneConverter converter;
        }
        EXPECT_EQ(initialisations, 3);
    }
}
