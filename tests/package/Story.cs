using System;
using System.IO;
using Brimlet;

// A small client in C#. It uses only the installed binding and the sample data.
// usage: Story DATA     the folder of the sample data
internal static class Story
{
    private static void Main(string[] arguments)
    {
        User anna;
        using (var session = new Session())
        {
            Expect(session.Report.First == LaunchResult.Created, "the file is created");
            session.AddLocales(File.ReadAllText(Path.Combine(arguments[0], "locales.json")));
            session.AddDomains(File.ReadAllText(Path.Combine(arguments[0], "domains.json")));
            session.AddUsers(File.ReadAllText(Path.Combine(arguments[0], "users.json")));
            Expect(session.GetUsers().Count == 300, "the sample's users are loaded");

            anna = session.UpdateUser(@"{""D"":{""id"":7,""name"":""Anna"",""domain"":10}}");
            session.DeleteUser(@"{""D"":{""op_id"":1002}}");
            Expect(session.GetUsersWithParams("name", "Anna").Count == 1, "a user that was written is found");
            Expect(session.GetUser(1002) == null, "a user that was removed is not found");
            try
            {
                session.AddUsers("no document");
                Expect(false, "what is no document is refused");
            }
            catch (BrimletException exception)
            {
                Expect(exception.Code == Code.Refused, "an exception carries the code");
            }
        }
        Expect(anna.Domain.Locale != null, "a user outlives the session");
        Console.WriteLine("the client in C# has succeeded");
    }

    private static void Expect(bool holds, string what)
    {
        if (!holds)
        {
            throw new InvalidOperationException(what);
        }
    }
}
