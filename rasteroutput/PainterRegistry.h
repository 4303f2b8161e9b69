// Painters by name: a client registers how to make one, and whoever needs a painter asks for it without knowing its
// class. The table is process-wide and not guarded against use by several threads at once.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <string>

namespace RasterOutput
{
    class Painter;

    /// Makes a new painter, which passes to the caller.
    using PainterCreator = Painter* (*)();

    /// Enters `creator` under `identifier`, which may be any string of bytes. Throws Exception "<identifier> painter
    /// identifier already registered" if the name is taken, and then leaves the table as it was, and std::bad_alloc.
    void RegisterPainter(const std::string& identifier, PainterCreator creator);

    /// Removes the entry; painters made by it live on. Throws Exception "<identifier> painter failed to unregister" if
    /// there is none.
    void UnregisterPainter(const std::string& identifier);

    /// A new painter from the creator registered under `identifier`. Throws Exception "Could not make painter
    /// <identifier>" if there is none or if it throws anything, and std::bad_alloc.
    boost::shared_ptr<Painter> MakePainter(const std::string& identifier);
}
