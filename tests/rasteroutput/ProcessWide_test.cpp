// The end of the process, with the tables in every state in which a host may leave them. Each case runs in a process of
// its own; the sanitizers' leak check looks at its end as well.
#include "rasteroutput/Exception.h"
#include "rasteroutput/Painter.h"
#include "rasteroutput/PainterRegistry.h"
#include "rasteroutput/ProcessWide.h"
#include "tests/rasteroutput/Stages.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>

namespace RasterOutput
{
    namespace
    {
        void TakeNothing(Processor&, ClientParameterExtractor&) {}
        Painter* MakeNone()
        {
            return nullptr;
        }

        void RegisterAll()
        {
            RegisterPainter("left behind", &MakeNone);
            ExtractionDispatcher::Instance().Add<BareStage, NumberExtractor>(&TakeNothing);
        }

        // Stands for a host's object that came into being before the tables and so outlives them.
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

            static void UseTables()
            {
                ExtractionDispatcher::Instance().Remove<BareStage, NumberExtractor>();
                try
                {
                    UnregisterPainter("left behind");
                    std::_Exit(2);
                }
                catch (const Exception&)
                {
                    // There is nothing left to unregister.
                }
                try
                {
                    RegisterPainter("too late", &MakeNone);
                    std::_Exit(3);
                }
                catch (const std::logic_error&)
                {
                    // Nor a place to register at.
                }
            }
        };

        LateUser lateUser;
    }

    TEST(ProcessWideDeathTest, EntriesLeftBehindDieWithTheProcess)
    {
        const auto leave = []
        {
            RegisterAll();
            std::exit(0);
        };
        EXPECT_EXIT(leave(), testing::ExitedWithCode(0), "^$");
    }

    TEST(ProcessWideDeathTest, TablesCountAsEmptyForWhoeverOutlivesThem)
    {
        const auto leave = []
        {
            RegisterAll();
            lateUser.armed = true;
            std::exit(0);
        };
        EXPECT_EXIT(leave(), testing::ExitedWithCode(0), "^$");
    }
}
