// The registries of painters and plugins. They have one contract, which is tested on painters, and two vocabularies.
#include "rasteroutput/Painter.h"
#include "rasteroutput/PainterRegistry.h"
#include "rasteroutput/Plugin.h"
#include "rasteroutput/PluginRegistry.h"
#include "tests/rasteroutput/Failures.h"

#include <gmock/gmock.h>

namespace RasterOutputTest
{
    using namespace RasterOutput;

    namespace
    {
        int paintersAlive = 0;

        /// A painter that can be told from others by its mark.
        template <char Mark>
        class MarkedPainter : public Painter
        {
        public:
            MarkedPainter() { ++paintersAlive; }
            ~MarkedPainter() override { --paintersAlive; }
            void InitializePainter() override {}
            void FinalizePainter() override {}
        };

        template <char Mark>
        Painter* NewMarked()
        {
            return new MarkedPainter<Mark>;
        }

        template <char Mark>
        bool Makes(const std::string& name)
        {
            return dynamic_cast<MarkedPainter<Mark>*>(MakePainter(name).get()) != nullptr;
        }
    }

    class RegistryTest : public testing::Test
    {
    protected:
        ~RegistryTest() override
        {
            for (const std::string& name : names)
            {
                UnregisterPainter(name);
            }
            EXPECT_EQ(paintersAlive, 0);
        }

        void Register(const std::string& name, PainterCreator creator)
        {
            RegisterPainter(name, creator);
            names.push_back(name);
        }

        std::vector<std::string> names;
    };

    TEST_F(RegistryTest, SecondRegistrationFailsAndLeavesTheFirst)
    {
        Register("one", &NewMarked<'1'>);
        EXPECT_THAT(
            [] { RegisterPainter("one", &NewMarked<'2'>); }, FailsWith("one painter identifier already registered"));
        EXPECT_TRUE(Makes<'1'>("one"));
    }

    TEST_F(RegistryTest, NameIsFreeAgainAfterUnregisterAndItsProductsLiveOn)
    {
        RegisterPainter("again", &NewMarked<'1'>);
        auto painter = MakePainter("again");
        UnregisterPainter("again");
        EXPECT_EQ(paintersAlive, 1);
        painter.reset();
        Register("again", &NewMarked<'2'>);
        EXPECT_TRUE(Makes<'2'>("again"));
    }

    TEST_F(RegistryTest, UnknownNameAndBrokenCreatorFailInTheRegistrysOwnWords)
    {
        Register("Known", &NewMarked<'1'>);
        Register("broken", []() -> Painter* { throw 42; });
        EXPECT_THAT([] { UnregisterPainter("known"); }, FailsWith("known painter failed to unregister"));
        EXPECT_THAT([] { MakePainter("known"); }, FailsWith("Could not make painter known"));
        EXPECT_THAT([] { MakePainter("broken"); }, FailsWith("Could not make painter broken"));
    }

    TEST_F(RegistryTest, PluginsAreATableOfTheirOwnWithWordsOfTheirOwn)
    {
        const PluginCreator newPlugin = [] { return new Plugin; };
        Register("both", &NewMarked<'1'>);
        EXPECT_THAT([] { MakePlugin("both"); }, FailsWith("Could not make plugin both"));
        RegisterPlugin("both", newPlugin);
        EXPECT_THAT([=] { RegisterPlugin("both", newPlugin); }, FailsWith("both plugin identifier already registered"));
        EXPECT_NE(MakePlugin("both"), nullptr);
        UnregisterPlugin("both");
        EXPECT_THAT([] { UnregisterPlugin("both"); }, FailsWith("both plugin failed to unregister"));
    }
}
