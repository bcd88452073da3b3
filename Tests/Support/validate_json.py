#!/usr/bin/env python3
"""Usage: validate_json.py SCHEMA FILE. Says on standard error what in the file is not as the schema wants it."""
import json
import sys

import jsonschema

schema, instance = (json.load(open(file, encoding="utf-8")) for file in sys.argv[1:3])
jsonschema.Draft7Validator.check_schema(schema)
errors = list(jsonschema.Draft7Validator(schema).iter_errors(instance))
for error in errors:
    print("/".join(map(str, error.absolute_path)) + ": " + error.message, file=sys.stderr)
sys.exit(1 if errors else 0)
