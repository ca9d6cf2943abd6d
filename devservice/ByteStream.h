#pragma once

#include <boost/asio/buffer.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <boost/system/system_error.hpp>

namespace DevService {

/// A connection's bytes, in the clear or through TLS. The lower-case methods are what Asio and Beast require of a
/// blocking stream, so their reading and writing functions accept one.
class ByteStream {
public:
    using ErrorCode = boost::system::error_code;

    virtual ~ByteStream() = default;

    template <class Buffers>
    std::size_t read_some(const Buffers& i_buffers, ErrorCode& o_error) {
        return ReadSome(*boost::asio::buffer_sequence_begin(i_buffers), o_error);
    }

    template <class Buffers>
    std::size_t write_some(const Buffers& i_buffers, ErrorCode& o_error) {
        return WriteSome(*boost::asio::buffer_sequence_begin(i_buffers), o_error);
    }

    template <class Buffers>
    std::size_t read_some(const Buffers& i_buffers) {
        return Checked([&](ErrorCode& o_error) { return read_some(i_buffers, o_error); });
    }

    template <class Buffers>
    std::size_t write_some(const Buffers& i_buffers) {
        return Checked([&](ErrorCode& o_error) { return write_some(i_buffers, o_error); });
    }

private:
    virtual std::size_t ReadSome(boost::asio::mutable_buffer i_buffer, ErrorCode& o_error) = 0;
    virtual std::size_t WriteSome(boost::asio::const_buffer i_buffer, ErrorCode& o_error) = 0;

    template <class Step>
    static std::size_t Checked(Step i_step) {
        ErrorCode error;
        const std::size_t size = i_step(error);
        if (error)
            throw boost::system::system_error(error);
        return size;
    }
};

/// The bytes of any Asio stream, which the caller owns.
template <class Stream>
class ByteStreamOf final : public ByteStream {
public:
    explicit ByteStreamOf(Stream& io_stream) : m_stream(io_stream) {}

private:
    std::size_t ReadSome(boost::asio::mutable_buffer i_buffer, ErrorCode& o_error) override {
        return m_stream.read_some(i_buffer, o_error);
    }
    std::size_t WriteSome(boost::asio::const_buffer i_buffer, ErrorCode& o_error) override {
        return m_stream.write_some(i_buffer, o_error);
    }

    Stream& m_stream;
};

using PlainStream = ByteStreamOf<boost::asio::ip::tcp::socket>;
using TlsStream = ByteStreamOf<boost::asio::ssl::stream<boost::asio::ip::tcp::socket&>>;

} // namespace DevService
