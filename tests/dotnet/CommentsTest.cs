using System.Collections.Generic;
using System.IO;
using System.Linq;
using System.Reflection;
using System.Text.RegularExpressions;
using System.Xml;
using Brimlet;

// The documentation comments of the calls: the compiler finds what has none, and this what they leave out.
internal static class CommentsTest
{
    internal static void Run()
    {
        var document = new XmlDocument();
        document.Load(Path.ChangeExtension(typeof(Session).Assembly.Location, ".xml"));
        foreach (MethodInfo method in NamesTest.Methods())
        {
            var comment = (XmlElement)document.SelectSingleNode(
                "/doc/members/member[starts-with(concat(@name, '('), 'M:Brimlet.Session." + method.Name + "(')]");
            CheckParameters(method, comment);
            CheckCodes(method.Name, comment);
        }
    }

    private static void CheckParameters(MethodInfo method, XmlElement comment)
    {
        string[] names = method.GetParameters().Select(parameter => parameter.Name).ToArray();
        Check.That(method.Name + " says what each parameter is", names.SequenceEqual(Names(comment, "param")));
        Check.That("and refers to no other", Names(comment, "paramref").All(names.Contains));
        Check.Equal("and says what it returns, if anything", method.ReturnType != typeof(void),
            comment.SelectSingleNode("returns") != null);
    }

    private static void CheckCodes(string name, XmlElement comment)
    {
        IEnumerable<string> expected = Headers.Results(char.ToLowerInvariant(name[0]) + name.Substring(1))
            .Where(result => IsThrown(name, result.Key, result.Value)).Select(result => result.Key);
        Check.That("and which codes it throws", expected.SequenceEqual(comment.SelectNodes("exception/see")
            .Cast<XmlElement>().Select(see => see.GetAttribute("cref").Split('.').Last().ToUpperInvariant())));
    }

    // Whether a result of the function is an exception of the method. A session passes pointers to null, and returns
    // null or an empty list if there is nothing to read.
    private static bool IsThrown(string name, string code, string condition)
    {
        switch (code)
        {
            case "DONE": return false;
            case "NOTFOUND": return !name.StartsWith("Get") && name != "AddEvents";
            case "REFUSED": return Regex.IsMatch(condition, "`(json|key)`");
            default: return true;
        }
    }

    private static IEnumerable<string> Names(XmlElement comment, string tag)
    {
        return comment.GetElementsByTagName(tag).Cast<XmlElement>().Select(element => element.GetAttribute("name"));
    }
}
