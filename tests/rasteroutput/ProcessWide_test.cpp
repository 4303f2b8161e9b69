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

    TEST(ProcessWideDeathTest, EntriesLeftAtTheEndOfTheProcessDoNoHarmAndCanBeUsed)
    {
        const auto leave = [](bool armed, void (*atExit)())
        {
            std::atexit(atExit);
            RegisterAll();
            lateUser.armed = armed;
            std::exit(0);
        };
        EXPECT_EXIT(leave(false, [] {}), testing::ExitedWithCode(0), "^$");
        EXPECT_EXIT(leave(true, [] {}), testing::ExitedWithCode(7), "^$") << "by a static that is older";
        EXPECT_EXIT(leave(false, &UseTables), testing::ExitedWithCode(7), "^$") << "by an exit handler that is older";
    }
}
