#include "Encoding.h"
#include "Options.h"
#include "Server.h"
#include "Service.h"
#include "StateFolder.h"

#include <CLI/CLI.hpp>
#include <boost/asio/signal_set.hpp>

#include <csignal>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

namespace {

using namespace DevService;

std::filesystem::path NewTemporaryFolder() {
    constexpr std::size_t name_bytes = 9;
    return std::filesystem::temp_directory_path() / ("devservice-" + RandomText(name_bytes));
}

/// Writes what a client needs; the address last, because others wait for it.
void Publish(const StateFolder& i_state, Service& io_service, const std::string& i_address) {
    i_state.Remove("address"); // of a run that was killed
    i_state.Write("ca.pem", io_service.authority.Pem());
    for (std::size_t i = 0; i < io_service.accounts.Count(); ++i) {
        const std::string token = io_service.accounts.IssueToken(io_service.accounts.At(i));
        i_state.Write(i == 0 ? "token" : "token." + std::to_string(i), token);
    }
    i_state.Write("address", i_address);
}

int Serve(const Options& i_options) {
    Service service;
    service.max_upload = i_options.max_upload;
    for (const Options::User& user : i_options.users)
        service.accounts.Add(user.name, user.password, user.root);
    Server server(service, i_options.port);
    boost::asio::signal_set signals(server.Events(), SIGINT, SIGTERM);
    signals.async_wait([&](const boost::system::error_code&, int) { server.Stop(); });

    const StateFolder state(i_options.state_folder ? *i_options.state_folder : NewTemporaryFolder());
    const std::string address = "127.0.0.1:" + std::to_string(server.Port());
    Publish(state, service, address);
    std::cout << "devservice: listening on " << address << ", state in " << state.Path().string() << '\n' << std::flush;
    server.Run();
    state.Remove("address");
    return 0;
}

} // namespace

int main(int i_argument_count, char** i_arguments) {
    CLI::App program;
    Options options;
    options.AddTo(program);
    try {
        program.parse(i_argument_count, i_arguments);
        return Serve(options);
    } catch (const CLI::ParseError& error) {
        return program.exit(error) == 0 ? 0 : 2;
    } catch (const std::exception& error) {
        std::cerr << "devservice: " << error.what() << '\n';
        return 1;
    }
}
