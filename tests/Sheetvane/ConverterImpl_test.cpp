// A converter's job from its construction to its end, and what it enters in the framework's tables meanwhile.
#include "cip3output/CIP3Painter.h"
#include "cip3output/CIP3ParameterExtractor.h"
#include "frontend/ConverterImpl.h"
#include "rasteroutput/Exception.h"
#include "rasteroutput/PainterRegistry.h"

#include <Sheetvane/SheetvaneConverter.h>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace SheetvaneTest
{
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

    TEST(ConverterImpl, ItsEndLeavesNoEntryBehind)
    {
        auto job = std::make_unique<Sheetvane::ConverterImpl>();
        const boost::shared_ptr<RasterOutput::Painter> painter = RasterOutput::MakePainter("CIP3Painter");
        job.reset();
        EXPECT_THROW(RasterOutput::MakePainter("CIP3Painter"), RasterOutput::Exception);
        Sheetvane::CIP3ParameterExtractor extractor;
        EXPECT_THROW(painter->Initialize({}, extractor), std::runtime_error);
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
