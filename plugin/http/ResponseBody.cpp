#include "http/ResponseBody.h"

#include "core/trace/Trace.h"

#include <algorithm>

void Http::AppendBody(Response& io_response, std::string& io_body, std::size_t i_limit) {
    TRACE_FUNCTION();
    char piece[1024];
    while (io_body.size() < i_limit) {
        const std::uint32_t size = io_response.Read(piece, std::min(sizeof piece, i_limit - io_body.size()));
        if (size == 0)
            break;
        io_body.append(piece, size);
    }
}
