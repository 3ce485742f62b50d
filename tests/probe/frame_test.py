#!/usr/bin/env python3
"""What the line console does with its input as such: each line gets one line of valid JSON.

usage: frame_test.py CONSOLE SCENARIO_FOLDER
"""
import glob
import json
import os
import random
import subprocess
import sys
import unittest

CONSOLE, SCENARIOS = sys.argv.pop(1), sys.argv.pop(1)


def ask(data):
    done = subprocess.run([CONSOLE], input=data, stdout=subprocess.PIPE, timeout=100, check=True)
    return [json.loads(line) for line in done.stdout.decode("utf-8").splitlines()]


def reply(line):
    replies = ask(line + b"\n")
    assert len(replies) == 1, replies
    return replies[0]


def scenario_requests():
    for file in sorted(glob.glob(os.path.join(SCENARIOS, "functions_*.jsonl"))):
        with open(file, encoding="utf-8") as lines:
            for line in filter(str.strip, lines):
                if "send" in json.loads(line):
                    yield json.dumps(json.loads(line)["send"]).encode()


class Frame(unittest.TestCase):
    def test_lists_each_op_once_and_knows_each(self):
        names = subprocess.run([CONSOLE, "--ops"], stdout=subprocess.PIPE, check=True).stdout
        names = names.decode().splitlines()
        self.assertEqual(len(names), len(set(names)))
        self.assertLessEqual({"rank", "cache.search", "app.start"}, set(names))
        # Not the ops that need no field: they would be performed.
        for name in names:
            if not name.startswith(("cache.", "app.", "shortcuts.list")):
                error = reply(json.dumps({"op": name}).encode())["error"]
                self.assertTrue(error == "not built yet" or error.endswith("is missing"), error)

    def test_answers_each_line_in_order_and_ends_with_the_input(self):
        sizes = [5, 2, 9, 7]
        lines = [json.dumps({"op": "text.permissions", "mode": mode}).encode() for mode in sizes]
        texts = [each["text"] for each in ask(b"\n".join(lines))]  # no line break at the end
        self.assertEqual(texts, ["--- --- r-x", "--- --- -w-", "--- --x --x", "--- --- rwx"])
        self.assertEqual(ask(b""), [])

    def test_refuses_what_is_no_request_and_says_why(self):
        for line, error in [
                (b"", "the line is no JSON"),
                (b"{\"op\":", "the line is no JSON"),
                (b"{\"op\":\"\xff\"}", "the line is no JSON"),
                (b"{\"op\":\"\xed\xa0\x80\"}", "the line is no JSON"),
                (b"\0\0", "the line is no JSON"),
                (b"{\"a\":1e999}", "the line is no JSON"),
                (b"[1]", "the line is no JSON object"),
                (b"{}", "field 'op' is missing"),
                (b"{\"op\":7}", "field 'op' must be a text"),
                (b"{\"op\":\"nothing\"}", "unknown op 'nothing'"),
                (b"{\"op\":\"app.operations\"}", "not built yet"),
                (b"{\"op\":\"rank\",\"filter\":\"a\"}", "field 'candidate' is missing"),
                (b"{\"op\":\"rank\",\"candidate\":[],\"filter\":\"a\"}",
                 "field 'candidate' must be a text"),
                (b"{\"op\":\"text.permissions\",\"mode\":65536}",
                 "field 'mode' must be a whole number from 0 to 65535"),
                (b"{\"op\":\"text.permissions\",\"mode\":-1}",
                 "field 'mode' must be a whole number from 0 to 65535"),
                (b"{\"op\":\"text.permissions\",\"mode\":1.0}",
                 "field 'mode' must be a whole number"),
                (b"{\"op\":\"name.next\",\"kind\":\"move\",\"path\":\"/a\\u0000\"}",
                 "field 'path' must be a path"),
                (b"{\"op\":\"name.next\",\"kind\":\"move\",\"path\":\"/a\\ud800\"}",
                 "field 'path' must be a path"),
                (b"{\"op\":\"rule.status\",\"path\":\"/\",\"typeMask\":1,\"rules\":[{},7]}",
                 "field 'rules[1]' must be an object"),
                (b"[" * 201 + b"]" * 201, "the line is nested too deeply"),
                (b"[" * 1000000, "the line is nested too deeply"),
                (b"\"" + b"a" * (64 << 20) + b"\"", "the line is too long")]:
            self.assertEqual(reply(line), {"ok": False, "error": error}, line[:80])

    def test_of_two_equal_keys_the_last_counts(self):
        line = b'{"op":"rank","op":"text.permissions","mode":"x","mode":1}'
        self.assertEqual(reply(line)["text"], "--- --- --x")

    def test_lone_surrogates_and_the_characters_of_the_private_plane_survive(self):
        for text in ["\ud83d", "\udc00", "\udc80\ud800x", "\U0001f600", "\\ud83d", "\U0010f000",
                     "\U0010f7ff\U0010ff80", "\udc80\U0010f480\ud83dz", "\U0010f800", "a\0b"]:
            for ascii_only in (True, False):
                request = json.dumps({"op": "fuzzy", "search": text.replace("\\", "\\\\"),
                                      "candidate": ""}, ensure_ascii=ascii_only)
                if ascii_only or not any(0xD800 <= ord(c) < 0xE000 for c in text):
                    self.assertEqual(reply(request.encode())["terms"], [text], ascii(text))
        for path in ["/a\udcff", "/\udce9\udc80b", "/\U0010f480", "/\U0010ff80", "/\u00e9"]:
            request = {"op": "name.next", "kind": "duplicate", "path": path}
            self.assertEqual(reply(json.dumps(request).encode())["path"], path + " copy")

    def test_survives_noise(self):
        noise = random.Random(5)
        lines = [noise.randbytes(noise.randrange(200)).replace(b"\n", b"") for _ in range(500)]
        requests = list(scenario_requests())
        self.assertGreater(len(requests), 50)
        for _ in range(4000):
            line = bytearray(noise.choice(requests))
            for _ in range(noise.randrange(1, 4)):
                at = noise.randrange(len(line))
                line[at:at + noise.randrange(4)] = noise.choice(
                    [noise.randbytes(2), b"\\ud8", b"\"", b"-1", b"[", b"99999999999", b"\0", b""])
            lines.append(bytes(line).replace(b"\n", b""))
        replies = ask(b"".join(line + b"\n" for line in lines))
        self.assertEqual(len(replies), len(lines))
        for each in replies:
            self.assertIsInstance(each["error"] if each["ok"] is False else each, (str, dict))


if __name__ == "__main__":
    unittest.main()
