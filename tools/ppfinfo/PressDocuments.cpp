#include "ppfinfo/PressDocuments.h"

#include "host/Text.h"
#include "ppfinfo/Text.h"

#include <pugixml.hpp>

#include <new>

namespace PpfInfo
{
    namespace
    {
        constexpr const char* Process = "ConventionalPrinting";
        constexpr const char* Profile = "InkZoneProfile";
        constexpr const char* ProfileId = "InkZones";
        constexpr const char* JobPartId = "InkZones";

        /// The library gives an empty handle where it has no memory.
        template <class Handle>
        Handle Made(Handle handle)
        {
            if (!handle)
            {
                throw std::bad_alloc();
            }
            return handle;
        }

        pugi::xml_node Child(pugi::xml_node parent, const char* name)
        {
            return Made(parent.append_child(name));
        }

        void Set(pugi::xml_node node, const char* name, const std::string& value)
        {
            if (!Made(node.append_attribute(name)).set_value(value.c_str()))
            {
                throw std::bad_alloc();
            }
        }

        void Describe(pugi::xml_node node, const std::string& text, std::size_t longest)
        {
            if (!text.empty())
            {
                Set(node, "DescriptiveName", Host::Shortened(text, longest));
            }
        }

        std::string SideName(Ppf::Side side)
        {
            return side == Ppf::Side::Front ? "Front" : "Back";
        }

        std::string Zeros(std::size_t count)
        {
            std::string text;
            for (std::size_t i = 0; i < count; ++i)
            {
                text += i == 0 ? "0" : " 0";
            }
            return text;
        }

        void Save(const pugi::xml_document& document, std::ostream& out)
        {
            document.save(out, "  ", pugi::format_indent, pugi::encoding_utf8);
        }

        void Declare(pugi::xml_document& document)
        {
            const pugi::xml_node declaration = Made(document.append_child(pugi::node_declaration));
            Set(declaration, "version", "1.0");
            Set(declaration, "encoding", "UTF-8");
        }
    }

    void WriteJdf(const InkProfiles& profiles, std::ostream& out)
    {
        constexpr std::size_t LongestDescription = 255;
        const InkProfile& first = profiles.profiles.front();
        pugi::xml_document document;
        Declare(document);
        const pugi::xml_node jdf = Child(document.root(), "JDF");
        Set(jdf, "xmlns", "http://www.CIP4.org/JDFSchema_1_1");
        Set(jdf, "xmlns:xsi", "http://www.w3.org/2001/XMLSchema-instance");
        Set(jdf, "xsi:type", Process);
        Set(jdf, "ID", "Printing");
        Set(jdf, "Type", Process);
        Set(jdf, "Status", "Waiting");
        Set(jdf, "Version", "1.5");
        Set(jdf, "JobID", profiles.job.name);
        Set(jdf, "JobPartID", JobPartId);
        Describe(jdf, profiles.job.Description(), LongestDescription);
        const pugi::xml_node whole = Child(Child(jdf, "ResourcePool"), Profile);
        Set(whole, "ID", ProfileId);
        Set(whole, "Class", "Parameter");
        Set(whole, "Status", "Available");
        Set(whole, "PartIDKeys", "SheetName Side Separation");
        Set(whole, "ZoneWidth", Shortest(first.zoneWidth));
        Set(whole, "ZoneSettingsX", Zeros(first.zoneCount));
        pugi::xml_node sheet;
        pugi::xml_node side;
        const InkProfile* before = nullptr;
        for (const InkProfile& profile : profiles.profiles)
        {
            const bool isNewSheet = before == nullptr || before->sheet != profile.sheet;
            if (isNewSheet)
            {
                sheet = Child(whole, Profile);
                Set(sheet, "SheetName", profiles.sheets[profile.sheet].name);
                Describe(sheet, profiles.sheets[profile.sheet].Description(), LongestDescription);
            }
            if (isNewSheet || before->side != profile.side)
            {
                side = Child(sheet, Profile);
                Set(side, "Side", SideName(profile.side));
            }
            const pugi::xml_node leaf = Child(side, Profile);
            Set(leaf, "Separation", profiles.separations[profile.separation].name);
            Describe(leaf, profiles.separations[profile.separation].Description(), LongestDescription);
            if (profile.zoneWidth != first.zoneWidth)
            {
                Set(leaf, "ZoneWidth", Shortest(profile.zoneWidth));
            }
            Set(leaf, "ZoneSettingsX", profile.settings);
            before = &profile;
        }
        const pugi::xml_node link = Child(Child(jdf, "ResourceLinkPool"), "InkZoneProfileLink");
        Set(link, "rRef", ProfileId);
        Set(link, "Usage", "Input");
        Save(document, out);
    }

    void WriteXjdf(const InkProfiles& profiles, std::ostream& out)
    {
        constexpr std::size_t LongestDescription = 10000;
        pugi::xml_document document;
        Declare(document);
        const pugi::xml_node xjdf = Child(document.root(), "XJDF");
        Set(xjdf, "xmlns", "http://www.CIP4.org/JDFSchema_2_0");
        Set(xjdf, "JobID", profiles.job.name);
        Set(xjdf, "JobPartID", JobPartId);
        Set(xjdf, "Types", Process);
        Set(xjdf, "Version", "2.1");
        Describe(xjdf, profiles.job.Description(), LongestDescription);
        const pugi::xml_node set = Child(xjdf, "ResourceSet");
        Set(set, "Name", Profile);
        Set(set, "Usage", "Input");
        for (const InkProfile& profile : profiles.profiles)
        {
            const DocumentName& sheet = profiles.sheets[profile.sheet];
            const DocumentName& separation = profiles.separations[profile.separation];
            const pugi::xml_node resource = Child(set, "Resource");
            const std::string sheetText = sheet.Description();
            Describe(
                resource,
                sheetText.empty() ? separation.Description() : sheetText + ", " + XmlText(separation.trueName),
                LongestDescription);
            const pugi::xml_node part = Child(resource, "Part");
            Set(part, "SheetName", sheet.name);
            Set(part, "Side", SideName(profile.side));
            Set(part, "Separation", separation.name);
            const pugi::xml_node zones = Child(resource, Profile);
            Set(zones, "ZoneWidth", Shortest(profile.zoneWidth));
            Set(zones, "ZoneSettingsX", profile.settings);
        }
        Save(document, out);
    }
}
