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

        class CountedPainter : public Painter
        {
        public:
            CountedPainter() { ++paintersAlive; }
            ~CountedPainter() override { --paintersAlive; }
            void InitializePainter() override {}
            void FinalizePainter() override {}
        };

        Painter* NewPainter()
        {
            return new CountedPainter;
        }

        Painter* NoPainter()
        {
            return nullptr;
        }
    }

    TEST(Registry, NameIsTakenUntilItIsUnregisteredAndItsProductsLiveOn)
    {
        RegisterPainter("one", &NewPainter);
        EXPECT_THAT([] { RegisterPainter("one", &NoPainter); }, FailsWith("one painter identifier already registered"));
        auto painter = MakePainter("one");
        EXPECT_EQ(paintersAlive, 1) << "the first registration stays";
        UnregisterPainter("one");
        EXPECT_EQ(paintersAlive, 1);
        painter.reset();
        EXPECT_EQ(paintersAlive, 0);
        RegisterPainter("one", &NoPainter);
        EXPECT_EQ(MakePainter("one"), nullptr);
        UnregisterPainter("one");
    }

    TEST(Registry, UnknownNameAndBrokenCreatorFailInTheRegistrysOwnWords)
    {
        RegisterPainter("broken", []() -> Painter* { throw 42; });
        EXPECT_THAT([] { UnregisterPainter("Broken"); }, FailsWith("Broken painter failed to unregister"));
        EXPECT_THAT([] { MakePainter("Broken"); }, FailsWith("Could not make painter Broken"));
        EXPECT_THAT([] { MakePainter("broken"); }, FailsWith("Could not make painter broken"));
        UnregisterPainter("broken");
    }

    TEST(Registry, PluginsAreATableOfTheirOwnWithWordsOfTheirOwn)
    {
        const PluginCreator newPlugin = [] { return new Plugin; };
        RegisterPainter("both", &NoPainter);
        EXPECT_THAT([] { MakePlugin("both"); }, FailsWith("Could not make plugin both"));
        RegisterPlugin("both", newPlugin);
        EXPECT_THAT([=] { RegisterPlugin("both", newPlugin); }, FailsWith("both plugin identifier already registered"));
        EXPECT_NE(MakePlugin("both"), nullptr);
        UnregisterPlugin("both");
        EXPECT_THAT([] { UnregisterPlugin("both"); }, FailsWith("both plugin failed to unregister"));
        UnregisterPainter("both");
    }
}
