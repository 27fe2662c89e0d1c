// Reads JavaScript string literals. Standard input: a JSON list of literals without quotes. Each is evaluated as a
// script of its own, in double and in single quotes. Standard output: JSON {scripts, values: [[in double quotes, in
// single quotes], ...]}; "scripts" is how often a literal ran one, and what is no string is the error's text.
"use strict";

const {readFileSync} = require("node:fs");
const vm = require("node:vm");

let nScripts = 0;
const count = () => { ++nScripts; };
const context = vm.createContext({hacked: count, alert: count});

function valueOf(sLiteral)
{
    try
    {
        return vm.runInContext(sLiteral, context);
    }
    catch (e)
    {
        return String(e);
    }
}

const literals = JSON.parse(readFileSync(0, "utf8"));
const values = literals.map((s) => [`"${s}"`, `'${s}'`].map((sLiteral) => String(valueOf(sLiteral))));
console.log(JSON.stringify({scripts: nScripts, values}));
