// What has to be known to the raster framework while a converter exists: how a CIP3Painter is made, and how it gets its
// parameters. Each is a scoped owner of its entry.
#pragma once

namespace Sheetvane
{
    /// Name of the painter in the framework's registry.
    constexpr char PainterIdentifier[] = "CIP3Painter";

    class PainterRegistration
    {
    public:
        /// Throws RasterOutput::Exception if the identifier is taken.
        PainterRegistration();
        ~PainterRegistration();
        PainterRegistration(const PainterRegistration&) = delete;
        PainterRegistration& operator=(const PainterRegistration&) = delete;
    };

    class ExtractionRegistration
    {
    public:
        ExtractionRegistration();
        ~ExtractionRegistration();
        ExtractionRegistration(const ExtractionRegistration&) = delete;
        ExtractionRegistration& operator=(const ExtractionRegistration&) = delete;
    };
}
