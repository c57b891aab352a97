/* To be preloaded into a program: prints each statement that its SQLite runs, with the values, on standard error. */
#include <sqlite3.h>
#include <stdio.h>
#include <string.h>

static int print(unsigned event, void *unused, void *statement, void *text)
{
    (void)event;
    (void)unused;
    const int isOfTrigger = strncmp(text, "--", 2) == 0; /* SQLite then passes a comment instead of a statement */
    char *expanded = isOfTrigger ? NULL : sqlite3_expanded_sql(statement);
    fprintf(stderr, "%s\n", expanded ? expanded : (const char *)text);
    sqlite3_free(expanded);
    return 0;
}

static int traceConnection(sqlite3 *connection)
{
    return sqlite3_trace_v2(connection, SQLITE_TRACE_STMT, print, NULL);
}

/* SQLite calls the extension for each connection that is opened. */
__attribute__((constructor)) static void traceConnections(void)
{
    sqlite3_auto_extension((void (*)(void))traceConnection);
}
