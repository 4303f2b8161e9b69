// Finds the function that moves a client's parameters into a stage, from the concrete types of both. Thus a stage can be
// initialised by somebody who knows it as a Processor only.
#pragma once

#include <loki/MultiMethods.h>

namespace RasterOutput
{
    class ClientParameterExtractor;
    class Processor;

    /// Table of handlers, keyed by exact pairs of concrete types: a class derived from a registered one has no entry of
    /// its own. One per process, made on first use and there until the process has ended; not guarded against use by several
    /// threads at once.
    class ExtractionDispatcher
    {
    public:
        /// Moves the client's parameters from the extractor to the stage, which it may cast to the types of its entry.
        using Handler = void (*)(Processor& processor, ClientParameterExtractor& extractor);

        /// The process's table. May throw std::bad_alloc.
        static ExtractionDispatcher& Instance();

        ExtractionDispatcher(const ExtractionDispatcher&) = delete;
        ExtractionDispatcher& operator=(const ExtractionDispatcher&) = delete;

        /// Enters `handler` for a pair of types, in the place of any that was there. May throw std::bad_alloc.
        template <class ConcreteProcessor, class ConcreteExtractor>
        void Add(Handler handler)
        {
            entries.template Add<ConcreteProcessor, ConcreteExtractor>(handler);
        }

        /// Removes the entry for a pair of types, if there is one.
        template <class ConcreteProcessor, class ConcreteExtractor>
        void Remove()
        {
            entries.template Remove<ConcreteProcessor, ConcreteExtractor>();
        }

        /// Calls the handler for the dynamic types of both arguments with these arguments. Throws std::runtime_error
        /// "Function not found" if there is none, and what the handler throws.
        void Go(Processor& processor, ClientParameterExtractor& extractor);

    private:
        template <class T>
        friend T& ProcessWide();

        ExtractionDispatcher() = default;

        Loki::BasicDispatcher<Processor, ClientParameterExtractor, void, Handler> entries;
    };
}
