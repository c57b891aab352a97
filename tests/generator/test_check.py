"""Deliberately wrong headers: each mistake has a message with the place and the cure."""

import unittest

from generator import check, model
from support import SpoiledHeaders


class CheckTest(SpoiledHeaders):
    def findings(self):
        return check.findings(model.read(self.folder))

    def test_the_headers_are_as_they_should_be(self):
        self.finds()

    def test_a_finding_names_the_line(self):
        self.spoil("brimlet.h", "     `*user` is not null\n", "\n", inside="uint32_t deleteUser(")
        line = (self.folder / "brimlet.h").read_text(encoding="utf-8").splitlines().index(
            "BRIMLET_API uint32_t getUser(FlatUser **user, uint32_t id);") + 1
        self.assertTrue(all(finding.startswith(f"brimlet.h:{line}: getUser: ") for finding in self.findings()))

    # ---- Functions ----

    def test_a_function_without_a_comment(self):
        self.spoil("brimlet.h", "/**\n * Deletes all records. The server address stays.\n *\n"
                   " * @retval BRIMLET_DONE          the store is empty\n"
                   " * @retval BRIMLET_WRITE_FAILED  the store could not be written; nothing is deleted\n */\n", "")
        self.finds("clearAll: begin the comment with one sentence that says what the function does, and end it with a "
                   "full stop.",
                   'clearAll: add the line "@retval BRIMLET_DONE  ..." with what has then happened, and one for each '
                   'other result.')

    def test_a_function_outside_of_the_groups(self):
        self.spoil("brimlet.h", "/**\n * @name Clearing\n * @{\n */\n", "")
        self.spoil("brimlet.h", "/** @} */\n", "", inside="uint32_t clearAllExceptEvents(")
        self.finds('clearAll: put the function into a group, between "@name ..." with "@{" and "@}".',
                   'clearAllExceptEvents: put the function into a group, between "@name ..." with "@{" and "@}".')

    def test_a_parameter_without_words(self):
        self.spoil("brimlet.h", " * @param[in]  id    id of the user\n", " * @param[in]  id\n")
        self.finds('getUser: say what the parameter id is, as "@param[in] id  ...".')

    def test_a_parameter_that_is_left_out(self):
        self.spoil("brimlet.h", " * @param[out] user  receives the user\n", "")
        self.finds('getUser: say what the parameter user is, as "@param[out] user  ...".')

    def test_a_parameter_that_the_function_does_not_have(self):
        self.spoil("brimlet.h", " * @param[in]  id    id of the user\n", " * @param[in]  key   id of the user\n")
        with self.assertRaisesRegex(model.HeaderError, "correct the comments of the headers:\n.*'key'"):
            self.findings()

    def test_a_parameter_without_a_direction(self):
        self.spoil("brimlet.h", " * @param[in]  id    id of the user\n", " * @param id    id of the user\n")
        self.finds('getUser: write "@param[in] id", with the direction of the parameter.')

    def test_a_parameter_with_the_wrong_direction(self):
        self.spoil("brimlet.h", " * @param[out] count  receives the number of users\n",
                   " * @param[in]  count  receives the number of users\n")
        self.finds('getUsers: write "@param[out] count" instead of "@param[in]".')

    def test_a_document_without_a_form(self):
        self.spoil("brimlet.h", "@param[in] json    batch of users\n", "@param[in] json    the users\n")
        self.spoil("brimlet.h", "id-only document with \"op_id\"\n", "id-only document with the id\n")
        sentence = ('say which form json has: "batch of ...", "document of one ..." or "id-only document with" and its '
                    'keys.')
        self.finds(f"addUsers: {sentence}", f"deleteUser: {sentence}")

    def test_a_result_by_its_number(self):
        self.spoil("brimlet.h", "BRIMLET_NOT_FOUND    the store has no user with this id",
                   "8  the store has no user with this id")
        self.finds("getUser: write BRIMLET_NOT_FOUND instead of 8.")

    def test_a_result_without_a_name(self):
        self.spoil("brimlet.h", "BRIMLET_NOT_FOUND    the store has no user with this id",
                   "BRIMLET_GONE  the store has no user with this id")
        self.finds("getUser: write a name of BrimletResult instead of BRIMLET_GONE.")

    def test_a_result_without_a_condition(self):
        self.spoil("brimlet.h", "BRIMLET_NOT_FOUND    the store has no user with this id\n", "BRIMLET_NOT_FOUND\n")
        self.finds("getUser: say when the function returns BRIMLET_NOT_FOUND, behind the name.")

    def test_results_on_one_line(self):
        self.spoil("brimlet.h", " * @retval BRIMLET_DONE          the store is empty\n"
                   " * @retval BRIMLET_WRITE_FAILED  the store could not be written; nothing is deleted\n",
                   " * @return 0, 9\n")
        self.finds('clearAll: write "@return 0, 9" as one line "@retval NAME  condition" for each result.')

    def test_a_pointer_whose_refusal_is_not_listed(self):
        self.spoil("brimlet.h", " * @retval BRIMLET_REFUSED      `*user` is not null\n", "")
        self.finds("getUser: say under BRIMLET_REFUSED that `*user` is not null, or add the function to IRREGULAR.")

    def test_a_refusal_that_an_irregular_function_does_not_know(self):
        self.spoil("brimlet.h", "BRIMLET_REFUSED       `json` is not a JSON object\n",
                   "BRIMLET_REFUSED       `*event` is not null, or `json` is not a JSON object\n",
                   inside="uint32_t getAffectEvents(")
        self.finds("removeAffectFlag: take `*event` out of the condition of BRIMLET_REFUSED, or the function out of "
                   "IRREGULAR.")

    def test_ownership_that_is_not_said(self):
        for sentence in (" * Release it with freeUser.\n *\n * @param[out] user  receives the user\n",
                         " * Release it with freeUsersArray.\n *\n * @param[out] users  receives"):
            self.spoil("brimlet.h", sentence, sentence.partition("\n")[2])
        self.spoil("brimlet.h", " * Release each with free, on Windows with CoTaskMemFree.\n", "")
        self.spoil("brimlet.h", " * Release it with free, on Windows with CoTaskMemFree.\n", "")
        self.finds('getServerIp: add the sentence "Release it with free, on Windows with CoTaskMemFree.".',
                   'getUser: add the sentence "Release it with freeUser.".',
                   'getUsers: add the sentence "Release it with freeUsersArray.".',
                   'getSiteNameAndAddress: add the sentence "Release each with free, on Windows with CoTaskMemFree.".')

    def test_ownership_that_names_another_function(self):
        self.spoil("brimlet.h", " freeUser.\n *\n * @param[out] user  receives",
                   " freeDomain.\n *\n * @param[out] user  receives")
        self.finds('getUser: add the sentence "Release it with freeUser.".')

    def test_ownership_of_nothing(self):
        self.spoil("brimlet.h", "Deletes all records. The", "Deletes all records. Release it with freeUser. The")
        self.finds('clearAll: take out "Release it with freeUser.", since the function hands out nothing.')

    def test_a_lifecycle_function_that_does_not_say_what_it_returns(self):
        self.spoil("brimlet.h", " * @return a value of BrimletState\n", "")
        self.finds('getState: say what the function returns, as "@return ...".')

    # ---- Records ----

    def test_a_record_without_words(self):
        self.spoil("FlatRecords.h", "/** A locale. */\n", "")
        self.finds("FlatLocale: say in one sentence what the record is.")

    def test_a_field_without_a_comment(self):
        self.spoil("FlatRecords.h", ' /**< ISO code. Key "iso". */', "")
        self.finds("FlatLocale.iso: begin the comment with what the field means.",
                   'FlatLocale.iso: name the key of documents, as "Key "..."."'
                   ', or say "No key:" and where the value comes from.')

    def test_a_field_without_a_key(self):
        self.spoil("FlatRecords.h", ' /**< ISO code. Key "iso". */', " /**< ISO code. */")
        self.finds('FlatLocale.iso: name the key of documents, as "Key "..."."'
                   ', or say "No key:" and where the value comes from.')

    def test_a_field_without_a_meaning(self):
        self.spoil("FlatRecords.h", "ISO code. Key", "Key")
        self.finds("FlatLocale.iso: begin the comment with what the field means.")

    def test_a_field_with_a_key_and_none(self):
        self.spoil("FlatRecords.h", 'ISO code. Key "iso".', 'ISO code. Key "iso". No key: it is not read.')
        self.finds('FlatLocale.iso: name the key or say "No key:", not both.')

    def test_a_count_with_a_key(self):
        self.spoil("FlatRecords.h", "Number of zones.", 'Number of zones. Key "count".')
        self.finds("FlatSection.zonesCount: take out the key, since a count has none.")

    # ---- Enumerations ----

    def test_a_value_without_a_meaning(self):
        self.spoil("ResultCodes.h", "    /** Done. */\n", "")
        self.finds("BRIMLET_DONE: say in one sentence what the value means, and end it with a full stop.")

    def test_two_values_of_one_number(self):
        self.spoil("ResultCodes.h", "BRIMLET_NOT_FOUND = 8", "BRIMLET_NOT_FOUND = 7")
        self.finds("BRIMLET_NOT_FOUND: give it a number that no other value has.")


if __name__ == "__main__":
    unittest.main()
