// The registries of painters and plugins, which have one contract and two vocabularies.
#include "rasteroutput/PainterRegistry.h"
#include "rasteroutput/PluginRegistry.h"

#include "Failures.h"
#include "rasteroutput/Painter.h"
#include "rasteroutput/Plugin.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace RasterOutput
{
    namespace
    {
        int productsAlive = 0;

        /// Counts itself for as long as it lives.
        struct Counted
        {
            Counted() { ++productsAlive; }
            Counted(const Counted&) = delete;
            Counted& operator=(const Counted&) = delete;
            ~Counted() { --productsAlive; }
        };

        template <char mark>
        struct MarkedPainter : Painter
        {
            void InitializePainter() override {}
            void FinalizePainter() override {}
            Counted counted;
        };

        template <char mark>
        struct MarkedPlugin : Plugin
        {
            Counted counted;
        };

        struct Painters
        {
            template <char mark>
            using Marked = MarkedPainter<mark>;
            using Product = Painter;
            static constexpr auto Register = &RegisterPainter;
            static constexpr auto Unregister = &UnregisterPainter;
            static constexpr auto Make = &MakePainter;
            static constexpr char kind[] = "painter";
        };

        struct Plugins
        {
            template <char mark>
            using Marked = MarkedPlugin<mark>;
            using Product = Plugin;
            static constexpr auto Register = &RegisterPlugin;
            static constexpr auto Unregister = &UnregisterPlugin;
            static constexpr auto Make = &MakePlugin;
            static constexpr char kind[] = "plugin";
        };
    }

    template <class Kind>
    class RegistryTest : public testing::Test
    {
    protected:
        using Product = typename Kind::Product;

        ~RegistryTest() override
        {
            for (const std::string& name : names)
            {
                Kind::Unregister(name);
            }
        }

        template <char mark>
        static Product* MakeMarked()
        {
            return new typename Kind::template Marked<mark>;
        }

        [[noreturn]] static Product* MakeNothing() { throw 42; }

        void Register(const std::string& name, Product* (*creator)())
        {
            Kind::Register(name, creator);
            names.push_back(name);
        }

        template <char mark>
        static bool Makes(const std::string& name)
        {
            return dynamic_cast<typename Kind::template Marked<mark>*>(Kind::Make(name).get()) != nullptr;
        }

        static std::string Text(const std::string& before, const std::string& after = "")
        {
            return before + Kind::kind + after;
        }

        std::vector<std::string> names;
    };

    using Kinds = testing::Types<Painters, Plugins>;
    TYPED_TEST_SUITE(RegistryTest, Kinds, );

    TYPED_TEST(RegistryTest, FindsEachNameWhateverTheOrderOfRegistration)
    {
        this->Register("m", &TestFixture::template MakeMarked<'m'>);
        this->Register("z", &TestFixture::template MakeMarked<'z'>);
        this->Register("", &TestFixture::template MakeMarked<'0'>);
        this->Register("mm", &TestFixture::template MakeMarked<'2'>);
        this->Register("M", &TestFixture::template MakeMarked<'M'>);
        EXPECT_TRUE(this->template Makes<'m'>("m"));
        EXPECT_TRUE(this->template Makes<'z'>("z"));
        EXPECT_TRUE(this->template Makes<'0'>(""));
        EXPECT_TRUE(this->template Makes<'2'>("mm"));
        EXPECT_TRUE(this->template Makes<'M'>("M"));
        EXPECT_EQ(productsAlive, 0);
    }

    TYPED_TEST(RegistryTest, SecondRegistrationFailsAndLeavesTheFirst)
    {
        this->Register("one", &TestFixture::template MakeMarked<'1'>);
        EXPECT_THAT(
            [] { TypeParam::Register("one", &TestFixture::template MakeMarked<'2'>); },
            FailsWith(this->Text("one ", " identifier already registered").c_str()));
        EXPECT_TRUE(this->template Makes<'1'>("one"));
    }

    TYPED_TEST(RegistryTest, NameIsFreeAgainAfterUnregisterAndItsProductsLiveOn)
    {
        TypeParam::Register("again", &TestFixture::template MakeMarked<'1'>);
        auto product = TypeParam::Make("again");
        TypeParam::Unregister("again");
        EXPECT_EQ(productsAlive, 1);
        product.reset();
        EXPECT_EQ(productsAlive, 0);
        this->Register("again", &TestFixture::template MakeMarked<'2'>);
        EXPECT_TRUE(this->template Makes<'2'>("again"));
    }

    TYPED_TEST(RegistryTest, UnknownNameFailsInTheRegistrysOwnWords)
    {
        this->Register("Known", &TestFixture::template MakeMarked<'1'>);
        EXPECT_THAT(
            [] { TypeParam::Unregister("known"); }, FailsWith(this->Text("known ", " failed to unregister").c_str()));
        EXPECT_THAT([] { TypeParam::Make("known"); }, FailsWith(this->Text("Could not make ", " known").c_str()));
    }

    TYPED_TEST(RegistryTest, WhateverACreatorThrowsTheProductCouldNotBeMade)
    {
        this->Register("broken", &TestFixture::MakeNothing);
        EXPECT_THAT([] { TypeParam::Make("broken"); }, FailsWith(this->Text("Could not make ", " broken").c_str()));
    }

    TEST(Registries, KeepPaintersAndPluginsApart)
    {
        RegisterPainter("both", [] { return static_cast<Painter*>(new MarkedPainter<'1'>); });
        EXPECT_THAT([] { MakePlugin("both"); }, FailsWith("Could not make plugin both"));
        UnregisterPainter("both");
    }
}
