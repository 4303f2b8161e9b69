#include "ppfinfo/Observations.h"

#include "ppf/Check.h"
#include "ppfinfo/Text.h"

#include <algorithm>
#include <string>

namespace PpfInfo
{
    namespace
    {
        std::string SizeOf(const Ppf::Preview& preview)
        {
            return std::to_string(preview.UprightWidth()) + " x " + std::to_string(preview.UprightHeight());
        }

        std::string Quoted(const std::string& name)
        {
            return "\"" + ToPrintable(name) + "\"";
        }

        bool SameResolution(const Ppf::Preview& left, const Ppf::Preview& right)
        {
            const auto& a = left.resolution;
            const auto& b = right.resolution;
            return a.has_value() == b.has_value() && (!a || (a->x == b->x && a->y == b->y));
        }

        void ObserveSurface(const Ppf::Surface& surface, std::vector<Ppf::Finding>& findings)
        {
            std::vector<std::string> names;
            for (const Ppf::Preview& preview : surface.previews)
            {
                const Ppf::Preview& first = surface.previews.front();
                if (SizeOf(preview) != SizeOf(first))
                {
                    findings.push_back(
                        {preview.offset, "separation " + Quoted(preview.inks[0]) + " has " + SizeOf(preview) +
                                             " pixels, the first of its side " + SizeOf(first)});
                }
                if (!SameResolution(preview, first))
                {
                    findings.push_back(
                        {preview.offset, "separation " + Quoted(preview.inks[0]) +
                                             " has another resolution than the first of its side"});
                }
                if (!preview.OrientationOnSheet().IsUpright())
                {
                    findings.push_back(
                        {preview.offset,
                         "separation " + Quoted(preview.inks[0]) + " is stored turned or mirrored and shown upright"});
                }
                for (const std::string& name : preview.inks)
                {
                    if (std::find(names.begin(), names.end(), name) != names.end())
                    {
                        findings.push_back({preview.offset, "side has two separations named " + Quoted(name)});
                    }
                    names.push_back(name);
                }
            }
        }
    }

    std::vector<Ppf::Finding> Observations(const Ppf::Document& document)
    {
        std::vector<Ppf::Finding> findings = Ppf::Check(document, Ppf::CheckDepth::Structure);
        if (document.damage)
        {
            const auto isDamage = [&](const Ppf::Finding& finding)
            { return finding.offset == document.damage->offset && finding.text == document.damage->text; };
            findings.erase(std::remove_if(findings.begin(), findings.end(), isDamage), findings.end());
        }
        findings.insert(findings.end(), document.remarks.begin(), document.remarks.end());
        for (const Ppf::Sheet& sheet : document.sheets)
        {
            if (sheet.surfaces.empty() && !document.damage)
            {
                findings.push_back({sheet.offset, "sheet has no printed side"});
            }
            for (const Ppf::Surface& surface : sheet.surfaces)
            {
                ObserveSurface(surface, findings);
            }
        }
        std::stable_sort(
            findings.begin(), findings.end(),
            [](const Ppf::Finding& left, const Ppf::Finding& right) { return left.offset < right.offset; });
        return findings;
    }

    std::vector<Ppf::Finding> Observations(const Ppf::Preview& preview, const MeasuredPreview& measured)
    {
        std::vector<Ppf::Finding> findings = measured.findings;
        if (measured.excess > 0)
        {
            findings.push_back(
                {preview.offset, "data of separation " + Quoted(preview.inks[0]) + " goes on for " +
                                     std::to_string(measured.excess) +
                                     " bytes after its last row, which are left out"});
        }
        for (std::size_t i = 0; i < measured.inks.size(); ++i)
        {
            if (measured.inks[i].coverage <= 0)
            {
                findings.push_back({preview.offset, "separation " + Quoted(preview.inks[i]) + " has no ink"});
            }
        }
        return findings;
    }
}
