#!/usr/bin/env python3
"""Writes a `timew export` file of N intervals (default 100,000) to stdout.

The import benchmark's input: about nine years of working days from a fixed
seed, with the reference store's shape of master data (200 clients, each
with 5 projects of 2 tasks), an annotation on one interval in five.
The same seed gives the same bytes on any machine."""

import random
import sys
from datetime import datetime, timedelta, timezone

count = int(sys.argv[1]) if len(sys.argv) > 1 else 100_000
rng = random.Random(20261123)
clients = [f"Client{i:03d}" for i in range(200)]
words = ["design", "review", "calls", "email", "coding", "testing", "planning", "docs"]
moment = datetime(2016, 1, 4, 7, 0, tzinfo=timezone.utc)
out = sys.stdout
out.write("[\n")
for i in range(count):
    length = timedelta(minutes=rng.randrange(5, 40))
    end = moment + length
    client = rng.choice(clients)
    project = rng.randrange(5)
    tags = [f"client:{client}", f"project:P{project}", words[project + rng.randrange(2)]]
    record = '{"id":%d,"start":"%s","end":"%s","tags":[%s]' % (
        count - i, moment.strftime("%Y%m%dT%H%M%SZ"), end.strftime("%Y%m%dT%H%M%SZ"),
        ",".join('"%s"' % t for t in tags))
    if rng.random() < 0.2:
        record += ',"annotation":"Item %d, with a comma"' % i
    out.write(record + "}" + (",\n" if i + 1 < count else "\n"))
    moment = end + timedelta(minutes=rng.randrange(0, 5))
    if moment.hour >= 19:
        moment = (moment + timedelta(days=1)).replace(hour=7, minute=0)
out.write("]\n")
