#include "pdf2ppf/Rendering.h"

#include "host/Descriptor.h"
#include "host/Failure.h"
#include "host/Number.h"
#include "host/Paths.h"
#include "host/ProgressLine.h"
#include "host/Text.h"
#include "job/Look.h"
#include "pdf2ppf/Ghostscript.h"
#include "pdf2ppf/SeparationLines.h"
#include "pdf2ppf/SpotFiles.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <optional>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Pdf2Ppf
{
    namespace
    {
        /// The input goes by this name, so that no name is taken for an option or a device.
        constexpr char InputLink[] = "input";
        constexpr char Extension[] = ".tif";

        constexpr std::array<const char*, 4> ProcessInks = {"Cyan", "Magenta", "Yellow", "Black"};
        constexpr std::size_t Black = 3; ///< the place among them

        /// Spot colours that Ghostscript can keep apart on a page; 64 inks in all. Rendering with room for all of them takes
        /// several times as long as with the 10 that it begins with.
        constexpr int MostSpotColours = 60;

        /// How often finished pages are looked for.
        constexpr std::chrono::milliseconds Tick(100);

        [[noreturn]] void Fail(const RenderingOrder& order, const std::string& why)
        {
            throw Host::Failure(order.input + ": " + why);
        }

        class Run
        {
        public:
            Run(const RenderingOrder& theOrder, const PrivateFolder& theFolder, bool isPdf, bool takesAllSpotColours)
                : order(theOrder)
                , folder(theFolder)
                , skipsPages(isPdf && !theOrder.pages.IsAll())
                , process(Arguments(takesAllSpotColours), theFolder.Path())
            {
                if (order.showProgress)
                {
                    progress.emplace(STDERR_FILENO);
                }
            }

            /// Renders to the end; none if there are more spot colours than Ghostscript was told to make room for.
            std::optional<std::vector<Page>> Pages()
            {
                for (bool isRunning = true; isRunning;)
                {
                    ShowProgress();
                    // Pages that are there before all that is printed so far is read have had their inks' names printed.
                    const std::uint64_t begun = PagesBegun();
                    isRunning = process.Listen(messages, Tick);
                    // Its own temporary files take a part, and are gone at its end.
                    wasDiskFull = wasDiskFull || folder.IsFull();
                    if (messages.SaysSpotColoursAreLost())
                    {
                        return std::nullopt;
                    }
                    while (rendered + 1 < begun)
                    {
                        TakePage();
                    }
                }
                CheckEnd();
                return std::move(pages);
            }

        private:
            std::vector<std::string> Arguments(bool takesAllSpotColours) const
            {
                std::vector<std::string> arguments = {
                    "-dSAFER", "-dBATCH", "-dNOPAUSE", "-sDEVICE=tiffsep",
                    "-r" + Host::FullText(order.resolution * order.oversampling),
                    // An EPS file's page is its bounding box.
                    "-dEPSCrop",
                    // The names of spot colours are wanted as they are in the document.
                    "-dPrintSpotCMYK",
                    // Takes a quarter less time than the usual compression; the files are gone soon.
                    "-sCompression=pack"};
                if (takesAllSpotColours)
                {
                    arguments.push_back("-dMaxSpots=" + std::to_string(MostSpotColours));
                }
                if (skipsPages)
                {
                    arguments.push_back("-sPageList=" + order.pages.Text());
                }
                arguments.push_back(std::string("-sOutputFile=%d") + Extension);
                arguments.emplace_back(InputLink);
                return arguments;
            }

            /// The file with all inks of a page in one, which Ghostscript opens first.
            static std::string CompositeOf(std::uint64_t page) { return std::to_string(page) + Extension; }

            std::uint64_t PagesBegun() const
            {
                std::uint64_t begun = rendered;
                while (folder.Has(CompositeOf(begun + 1)))
                {
                    ++begun;
                }
                return begun;
            }

            void ShowProgress()
            {
                if (progress)
                {
                    const std::uint64_t all = order.pages.IsAll() ? messages.PagesInFile() : order.pages.Size();
                    progress->Show(
                        "page " + std::to_string(rendered + 1) + (all > rendered ? " of " + std::to_string(all) : ""));
                }
            }

            /// Takes over the next page, whose files are complete.
            void TakePage()
            {
                ++rendered;
                const std::uint64_t number = skipsPages ? order.pages.At(rendered - 1) : rendered;
                folder.Remove(CompositeOf(rendered));
                Page page{number, SeparationsOf(number), {}, {}};
                if (!order.pages.Has(number))
                {
                    RemoveFiles(page.inks);
                    return;
                }
                try
                {
                    if (!order.keepBlank)
                    {
                        LeaveOutBlankInks(page.inks);
                    }
                    Reduce(page);
                }
                catch (const Host::Failure& failure)
                {
                    const std::string reason = messages.Reason();
                    Fail(
                        order, "page " + std::to_string(number) + ": what Ghostscript wrote cannot be used: " +
                                   WordsOfFullDisk() + (reason.empty() ? failure.what() : reason));
                }
                pages.push_back(std::move(page));
            }

            /// Ghostscript does not always notice that.
            std::string WordsOfFullDisk() const
            {
                return wasDiskFull || folder.IsFull()
                           ? "the disk of " + folder.Path() + " is full; TMPDIR chooses another: "
                           : "";
            }

            void RemoveFiles(const std::vector<Ink>& inks) const
            {
                for (const Ink& ink : inks)
                {
                    folder.Remove(Host::NameIn(ink.file));
                }
            }

            /// All separations of the page that was rendered last, which has the number `number` in the file.
            std::vector<Ink> SeparationsOf(std::uint64_t number)
            {
                const std::string prefix = std::to_string(rendered) + '(';
                const std::string suffix = std::string(")") + Extension;
                std::vector<std::string> parts;
                for (const std::string& name : folder.Names(prefix))
                {
                    if (name.size() >= prefix.size() + suffix.size() &&
                        name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0)
                    {
                        parts.push_back(name.substr(prefix.size(), name.size() - prefix.size() - suffix.size()));
                    }
                }
                const auto fileOf = [&](const std::string& part) { return folder / (prefix + part + suffix); };

                std::vector<Ink> inks;
                for (const char* const ink : ProcessInks)
                {
                    const auto found = std::find(parts.begin(), parts.end(), ink);
                    if (found == parts.end())
                    {
                        Fail(order, "page " + std::to_string(number) + ": Ghostscript wrote no separation " + ink);
                    }
                    inks.push_back({ink, fileOf(ink)});
                    parts.erase(found);
                }
                const std::vector<std::string> names = messages.TakeSpotNames(parts.size());
                const auto spots = PartsOfSpots(names, std::move(parts));
                if (!spots)
                {
                    Fail(
                        order, "page " + std::to_string(number) +
                                   ": the spot colours that Ghostscript wrote are not those that it named");
                }
                for (std::size_t i = 0; i < names.size(); ++i)
                {
                    inks.push_back({names[i], fileOf((*spots)[i])});
                }
                return inks;
            }

            void LeaveOutBlankInks(std::vector<Ink>& inks) const
            {
                const Ink black = inks[Black];
                const auto blank =
                    std::stable_partition(inks.begin(), inks.end(), [](const Ink& ink) { return HasInk(ink.file); });
                const bool isBlank = blank == inks.begin();
                const std::vector<Ink> leftOut(blank, inks.end());
                inks.erase(blank, inks.end());
                if (isBlank)
                {
                    inks.push_back(black);
                }
                for (const Ink& ink : leftOut)
                {
                    if (!isBlank || ink.file != black.file)
                    {
                        folder.Remove(Host::NameIn(ink.file));
                    }
                }
            }

            /// Puts previews in place of the separations.
            void Reduce(Page& page) const
            {
                RasterFeedSelection selection;
                selection.orientation =
                    Jobs::OrientationForReader(page.number % 2 == 0 ? order.evenPages : order.oddPages);
                // What the files say of their resolution is rounded to a whole number.
                selection.inputResolution = order.resolution * order.oversampling;
                const SeparationLines turned(page.inks.front().file, selection);
                page.rendered = {turned.Width(), turned.Height()};

                selection.resolution = order.resolution;
                for (std::size_t i = 0; i < page.inks.size(); ++i)
                {
                    std::string& file = page.inks[i].file;
                    const std::string preview =
                        folder / ("preview-" + std::to_string(page.number) + '-' + std::to_string(i) + Extension);
                    page.preview = WritePreview(file, preview, selection);
                    folder.Remove(Host::NameIn(file));
                    file = preview;
                }
            }

            /// Takes the last page, and checks whether all went well.
            void CheckEnd()
            {
                const std::string reason = messages.Reason();
                const std::string words = reason.empty() ? "" : ": " + reason;
                if (const std::string fault = process.ExitFault(); !fault.empty())
                {
                    Fail(order, WordsOfFullDisk() + "Ghostscript " + fault + words);
                }
                const std::uint64_t begun = PagesBegun();
                const bool isFaulty = messages.SaysFileIsFaulty();
                if (begun == 0 && isFaulty)
                {
                    Fail(order, "Ghostscript cannot read it" + words);
                }
                while (rendered < begun)
                {
                    TakePage();
                }
                if (pages.size() < order.pages.Size())
                {
                    Fail(
                        order, "there is no page " + std::to_string(order.pages.At(pages.size())) +
                                   ", which --pages asks for" + (reason.empty() ? "" : "; Ghostscript" + words));
                }
                if (isFaulty)
                {
                    FailAsFaulty(reason);
                }
                if (pages.empty())
                {
                    Fail(order, "Ghostscript found no page in it" + words);
                }
                if (order.pages.IsAll() && pages.size() < messages.PagesInFile())
                {
                    Fail(
                        order, "Ghostscript rendered " + std::to_string(pages.size()) + " of its " +
                                   std::to_string(messages.PagesInFile()) + " pages" + words);
                }
            }

            [[noreturn]] void FailAsFaulty(const std::string& reason) const
            {
                Fail(
                    order, "Ghostscript can only repair the file or leave out what is wrong in it" +
                               (reason.empty() ? reason : ": " + reason));
            }

            const RenderingOrder& order;
            const PrivateFolder& folder;
            bool skipsPages; ///< Ghostscript renders the wanted pages alone
            Ghostscript process;
            Messages messages;
            std::optional<Host::ProgressLine> progress;
            bool wasDiskFull = false;
            std::uint64_t rendered = 0; ///< pages that are taken over, wanted or not
            std::vector<Page> pages;    ///< the wanted ones of them
        };
    }

    bool CheckInput(const RenderingOrder& order)
    {
        constexpr std::string_view PdfMark = "%PDF-";
        constexpr std::size_t PdfMarkWithin = 1024; // bytes from the start of the file
        // Without waiting for the other side of a pipe.
        const Host::Descriptor file(
            Host::Uninterrupted([&] { return open(order.input.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC); }));
        struct stat status = {};
        if (!file.IsOpen() || fstat(file.Number(), &status) != 0)
        {
            Fail(order, Host::SystemText(errno));
        }
        if (!S_ISREG(status.st_mode))
        {
            Fail(order, S_ISDIR(status.st_mode) ? Host::SystemText(EISDIR) : "a regular file is needed");
        }
        std::array<char, PdfMarkWithin> start{};
        const ssize_t size = Host::ReadAll(file.Number(), start.data(), start.size());
        if (size <= 0)
        {
            Fail(order, size < 0 ? Host::SystemText(errno) : "the file is empty");
        }
        return std::string_view(start.data(), static_cast<std::size_t>(size)).find(PdfMark) != std::string_view::npos;
    }

    std::vector<Page> Render(const RenderingOrder& order, const PrivateFolder& folder)
    {
        const bool isPdf = CheckInput(order);
        for (const bool takesAllSpotColours : {false, true})
        {
            folder.Link(InputLink, Host::AbsolutePath(order.input, Host::CurrentFolder()));
            if (auto pages = Run(order, folder, isPdf, takesAllSpotColours).Pages())
            {
                return std::move(*pages);
            }
            folder.Empty();
        }
        Fail(
            order,
            "a page has more than " + std::to_string(MostSpotColours) + " spot colours, which is Ghostscript's limit");
    }
}
