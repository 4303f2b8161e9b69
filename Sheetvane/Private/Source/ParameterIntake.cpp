// Host dictionaries are read inside a guard: whatever goes wrong in there is one failure to the host. A host's dictionary
// may add a sheet while it is read, and the job's sheets then move: each value is complete before its place is looked up.
#include "frontend/ParameterIntake.h"

#include "frontend/Failure.h"
#include "frontend/FailureTexts.h"
#include "frontend/HostValues.h"
#include "frontend/ValueToText.h"

#include <kxtypes.h>

#include <cstring>
#include <utility>

namespace Sheetvane
{
    namespace
    {
        std::string StringUnder(const KX_TDict& parameters, const char* key)
        {
            const KX_TString* const text = parameters.GetString(key);
            return text != nullptr ? TextOf(*text) : std::string();
        }

        /// `object` as the KX_TString that it has to be.
        template <class Object>
        const KX_TString& AsString(const Object& object)
        {
            return *static_cast<const KX_TString*>(object.DynamicCast("KX_TString", SourceUnit, __LINE__));
        }

        /// A number and its unit, from a dictionary that has both; else empty.
        std::string MeasureText(const KX_TDict& measure)
        {
            KX_TDict entries(measure, 0);
            if (!entries.HasKey("value") || !entries.HasKey("units"))
            {
                return {};
            }
            const std::string number = ValueToText(entries.At("value"));
            return number + " " + TextOf(AsString(entries.At("units")));
        }

        /// What is written after the key. The class is compared by its exact name: a derived class is some other value.
        std::string ParameterText(const KX_TAny& value)
        {
            const char* const className = value.ClassName();
            if (std::strcmp(className, "KX_TString") == 0)
            {
                return TextOf(AsString(value));
            }
            if (std::strcmp(className, "KX_TDict") == 0)
            {
                return MeasureText(*static_cast<const KX_TDict*>(value.DynamicCast("KX_TDict", SourceUnit, __LINE__)));
            }
            return ValueToText(value);
        }

        void RequireSheet(const std::vector<SheetRecord>& sheets, unsigned int sheetIndex)
        {
            if (sheetIndex >= sheets.size())
            {
                ThrowFailure(FailureText::SheetIndexOutOfBounds, __LINE__);
            }
        }
    }

    void SetRequiredParameters(std::vector<SheetRecord>& sheets, unsigned int sheetIndex, const KX_TDict& parameters)
    {
        RequireSheet(sheets, sheetIndex);
        try
        {
            sheets[sheetIndex].parameters.jobName.clear();
            sheets[sheetIndex].parameters.sheetName.clear();
            std::string name = StringUnder(parameters, "CIP3AdmJobName");
            sheets[sheetIndex].parameters.jobName.swap(name);
            name = StringUnder(parameters, "CIP3AdmSheetName");
            sheets[sheetIndex].parameters.sheetName.swap(name);
            sheets[sheetIndex].parameters.units = RasterOutput::CIP3Units::Inch;
        }
        catch (...)
        {
            ThrowFailure(FailureText::InvalidRequiredParameters, __LINE__);
        }
    }

    void SetOptionalParameters(std::vector<SheetRecord>& sheets, unsigned int sheetIndex, const KX_TDict& parameters)
    {
        RequireSheet(sheets, sheetIndex);
        try
        {
            sheets[sheetIndex].parameters.optionalParameters.clear();
            for (KX_TConstIterator entry(parameters); !entry.IsDone(); entry.Next())
            {
                std::string key = TextOf(AsString(entry.Key()));
                std::string text = ParameterText(entry.Value());
                sheets[sheetIndex].parameters.optionalParameters.emplace(std::move(key), std::move(text));
            }
        }
        catch (...)
        {
            ThrowFailure(FailureText::InvalidOptionalParameters, __LINE__);
        }
    }
}
