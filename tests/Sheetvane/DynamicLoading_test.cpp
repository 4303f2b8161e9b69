// The library as a host has it that loads it while it runs, as a plugin, and lets go of it again.
#include <kxtypes.h>

#include <gtest/gtest.h>

#include <memory>

#include <dlfcn.h>
#include <malloc.h>

namespace SheetvaneTest
{
    namespace
    {
        /// Loads the library, uses it up to a failure, unloads it. The class object of the failure, null if there was none.
        const KX_TClass* LoadAndUse()
        {
            void* const library = dlopen(SHEETVANE_LIBRARY, RTLD_NOW | RTLD_LOCAL);
            if (library == nullptr)
            {
                ADD_FAILURE() << dlerror();
                return nullptr;
            }
            // Constructors, operations and destructors take the object as their first argument.
            const auto construct =
                reinterpret_cast<void (*)(void*)>(dlsym(library, "_ZN9Sheetvane18SheetvaneConverterC1Ev"));
            const auto destroy =
                reinterpret_cast<void (*)(void*)>(dlsym(library, "_ZN9Sheetvane18SheetvaneConverterD1Ev"));
            const auto setRequired = reinterpret_cast<void (*)(void*, unsigned int, const KX_TDict&)>(
                dlsym(library, "_ZN9Sheetvane18SheetvaneConverter21SetRequiredParametersEjRK8KX_TDict"));
            const KX_TClass* classObject = nullptr;
            void* converter = nullptr;
            construct(&converter);
            try
            {
                setRequired(&converter, 0, KX_TDict());
            }
            catch (const KX_EException& failure)
            {
                classObject = &failure.ClassObject();
            }
            destroy(&converter);
            EXPECT_EQ(dlclose(library), 0);
            return classObject;
        }
    }

    TEST(DynamicLoading, ClassObjectsOfTheLibraryServeAfterItIsUnloaded)
    {
        const KX_TClass* const classObject = LoadAndUse();
        ASSERT_NE(classObject, nullptr);
        const std::unique_ptr<KX_TObject> failure(classObject->New());
        EXPECT_STREQ(failure->ClassName(), "KX_ECIP3Exception");
    }

    TEST(DynamicLoading, LoadingAgainAndAgainTakesNoMoreMemory)
    {
        LoadAndUse();
        const std::size_t before = mallinfo2().uordblks;
        for (int turn = 0; turn < 100; ++turn)
        {
            LoadAndUse();
        }
        EXPECT_LT(mallinfo2().uordblks, before + 10000);
    }
}
