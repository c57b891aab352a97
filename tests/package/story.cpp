// A small client in C++. It uses only the installed headers.
#include <brimlet.hpp>

#include <cstdlib>
#include <exception>
#include <iostream>

namespace {

void expect(bool holds, const char *what)
{
    if (!holds)
        throw std::runtime_error(what);
}

void tell()
{
    brimlet::Answer<brimlet::Record<brimlet::UserView>> kept(brimlet::Code::NotFound);
    {
        brimlet::Session session;
        expect(session.report().first == brimlet::LaunchResult::Created, "the file is created");
        expect(session.addUsers(R"({"D":{"items":[{"id":7,"name":"Anna"},{"id":8}]}})") == brimlet::Code::Done,
               "users are added");
        expect(session.getUsers().value().size() == 2, "all users are read");
        kept = session.updateUser(R"({"D":{"id":7,"login":"anna"}})");
        expect(session.deleteUser(R"({"D":{"op_id":8}})") == brimlet::Code::Done, "a user is removed");
        expect(session.getUser(8).code() == brimlet::Code::NotFound, "a user that was removed is not found");
    }
    expect(kept->name() == u"Anna" && kept->login() == u"anna", "a user outlives the session");
}

} // namespace

int main()
{
    try {
        tell();
        std::cout << "the client in C++ has succeeded\n";
        return EXIT_SUCCESS;
    } catch (const std::exception &failure) {
        std::cerr << "failed: " << failure.what() << '\n';
        return EXIT_FAILURE;
    }
}
