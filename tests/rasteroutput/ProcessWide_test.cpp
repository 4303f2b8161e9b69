// The end of the process, where hosts' own objects and exit handlers may outlive everything that came into being after them,
// and still use the tables. Each case runs in a process of its own; the sanitizers' leak check looks at its end as well.
#include "rasteroutput/Painter.h"
#include "rasteroutput/PainterRegistry.h"
#include "tests/rasteroutput/Stages.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace RasterOutputTest
{
    using namespace RasterOutput;

    namespace
    {
        void TakeNothing(Processor&, ClientParameterExtractor&) {}
        Painter* MakeNone()
        {
            return nullptr;
        }

        void RegisterAll()
        {
            RegisterPainter("a name", &MakeNone);
            ExtractionDispatcher::Instance().Add<BareStage, NumberExtractor>(&TakeNothing);
        }

        void UseTables()
        {
            BareStage stage;
            NumberExtractor extractor;
            stage.Initialize({}, extractor);
            MakePainter("a name");
            UnregisterPainter("a name");
            ExtractionDispatcher::Instance().Remove<BareStage, NumberExtractor>();
            RegisterAll();
            std::_Exit(7);
        }

        // Stands for a host's object that came into being before the tables.
        struct LateUser
        {
            bool armed = false;
            ~LateUser()
            {
                if (armed)
                {
                    UseTables();
                }
            }
        };

        LateUser lateUser;
    }

    TEST(ProcessWideDeathTest, EntriesLeftAtTheEndOfTheProcessDoNoHarm)
    {
        const auto leave = []
        {
            RegisterAll();
            std::exit(0);
        };
        EXPECT_EXIT(leave(), testing::ExitedWithCode(0), "^$");
    }

    TEST(ProcessWideDeathTest, StaticsOlderThanTheTablesCanUseThem)
    {
        const auto leave = []
        {
            RegisterAll();
            lateUser.armed = true;
            std::exit(0);
        };
        EXPECT_EXIT(leave(), testing::ExitedWithCode(7), "^$");
    }

    TEST(ProcessWideDeathTest, ExitHandlersOlderThanTheTablesCanUseThem)
    {
        const auto leave = []
        {
            std::atexit(&UseTables);
            RegisterAll();
            std::exit(0);
        };
        EXPECT_EXIT(leave(), testing::ExitedWithCode(7), "^$");
    }
}
