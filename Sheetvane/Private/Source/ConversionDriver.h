// The road from a job to its file: folder, painter, sheet after sheet, and what the host reads when something fails.
#pragma once

class KX_TURL;

namespace Sheetvane
{
    class ConverterImpl;

    /// Writes `job` to the file at `location`. Sets path and sheet count in the job's painter parameters, sizes and
    /// resolutions in its processor parameters, and the extents of each sheet that it reaches.
    ///
    /// Throws KX_ECIP3Exception with FolderNotCreated, with the text of a failure of the painter or the framework, and
    /// with ConversionFailed for everything else. Before the folder is looked at, also what the location throws, and
    /// boost::filesystem::filesystem_error for a folder that cannot be looked up.
    void CreateCIP3File(ConverterImpl& job, const KX_TURL& location);
}
