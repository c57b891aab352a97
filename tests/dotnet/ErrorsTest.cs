using System;
using Brimlet;

// The exceptions for a client's mistakes: one with the result code, or an ArgumentException.
internal static class ErrorsTest
{
    internal static void Run()
    {
        using (var workplace = new Workplace())
        using (var session = new Session(workplace.Directory))
        {
            CheckCodes(session);
            CheckArguments(session);
        }
        CheckWords();
    }

    private static void CheckCodes(Session session)
    {
        Check.Answers("a document without an id", Code.Incomplete,
            () => session.AddUsers(RecordsTest.Items("{'name':'Anna'}")));
        Check.Answers("a text that is no JSON", Code.Refused, () => session.AddUsers("id=1"));
        Check.Answers("an empty text", Code.Refused, () => session.AddUsers(""));
        Check.Answers("a key that cannot be searched for", Code.Refused,
            () => session.GetUsersWithParams("Login", "a"));
        Check.Answers("a removal of what is not there", Code.NotFound,
            () => session.DeleteSite(RecordsTest.Single("{'site_id':1}")));
        Check.Answers("an update of a device that is not there", Code.NotFound,
            () => session.UpdateDeviceFw(RecordsTest.Single("{'id':1}")));
        Check.Answers("a mark of an event that is not there", Code.NotFound,
            () => session.RemoveAffectFlag(RecordsTest.Single("{'id':1}")));
        Check.Answers("a zone without its device", Code.NoParent,
            () => session.UpdateZone(RecordsTest.Single("{'device':1,'section':2,'id':3}")));
        Check.Equal("events of unknown devices give none back", 0,
            session.AddEvents(RecordsTest.Items("{'id':1,'device':99}")).Count);
        Check.Equal("a read of nothing is null", null, session.GetUser(1));
        Check.Equal("a list of nothing is empty", 0, session.GetUsers().Count);
    }

    private static void CheckArguments(Session session)
    {
        Check.Throws<ArgumentNullException>("null is no document", () => session.AddUsers(null));
        Check.Throws<ArgumentNullException>("null is no key", () => session.GetUsersWithParams(null, "1"));
        Check.Throws<ArgumentNullException>("null is no value", () => session.GetUsersWithParams("id", null));
        session.SetServerIp("");
        Check.Equal("an empty server address is none", null, session.GetServerIp());
    }

    private static void CheckWords()
    {
        using (var workplace = new Workplace())
        using (var session = new Session(workplace.Directory))
        {
            BrimletException thrown = Check.Throws<BrimletException>("a mistake", () => session.DeleteUser("{}"));
            Check.Equal("its message names the call, the code and its meaning",
                "DeleteUser returned 5, a required member of the document is missing, or a member has a wrong type",
                thrown?.Message);
        }
        foreach (Code code in Enum.GetValues(typeof(Code)))
        {
            Check.That("there are words for " + code, code.Meaning() != "unknown");
        }
        foreach (LaunchResult result in Enum.GetValues(typeof(LaunchResult)))
        {
            Check.That("there are words for " + result, result.Meaning() != "unknown");
        }
        Check.Equal("but none for another code", "unknown", ((Code)1).Meaning());
        Check.Equal("and for another launch result", "unknown", ((LaunchResult)1).Meaning());
    }
}
