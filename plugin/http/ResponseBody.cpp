#include "http/ResponseBody.h"

#include "core/Trace.h"

void Http::AppendBody(Response& io_response, std::string& io_body) {
    TRACE_FUNCTION();
    char piece[1024];
    while (const std::uint32_t size = io_response.Read(piece, sizeof piece))
        io_body.append(piece, size);
}
