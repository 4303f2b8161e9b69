// Carrier of what a client decides for one concrete stage. The framework passes it on without knowing what is in it.
#pragma once

namespace RasterOutput
{
    /// Base of a client's parameter carrier. The handler that the ExtractionDispatcher holds for the concrete carrier
    /// and the concrete stage moves the parameters.
    class ClientParameterExtractor
    {
    public:
        ClientParameterExtractor() = default;
        ClientParameterExtractor(const ClientParameterExtractor&) = default;
        ClientParameterExtractor& operator=(const ClientParameterExtractor&) = default;
        virtual ~ClientParameterExtractor() = default;
    };
}
