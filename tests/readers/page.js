// The script of a test page. It stands before everything else and, when the page has loaded, compares what the browser
// made of every case with what it was meant to be. `pageTest` is set by cases.js before:
//
//   families  names
//   places    how often a case stands in the page: [["body"], ["double"], ...], an index into it a family
//   cases     [family, text, elements] a case; the elements that the template wrote, as in "font style"
//   scripts   texts that must be given to got(), in any order
//
// The report takes the place of the document: REPORT and then JSON in ASCII without "<" and "&".
"use strict";

const problems = {scripts: 0, elements: 0, attributes: 0, texts: 0};
const examples = [];
let nPlaces = 0;
let aGot = [];

for (const sName of ["hacked", "alert", "confirm", "prompt", "print", "open"])
    window[sName] = () => { addProblem("scripts", "a script ran", sName + "()"); };
window.got = (sText) => { aGot.push(sText); };

function addProblem(sKind, sWhat, sFound, sMeant)
{
    if (problems[sKind]++ < 5)
        examples.push({what: sWhat, found: String(sFound).slice(0, 300), meant: String(sMeant ?? "").slice(0, 300)});
}

function skeletonOf(tElement)
{
    return [...tElement.querySelectorAll("*")].map(
        (t) => [t.localName, ...[...t.attributes].map((tAttribute) => tAttribute.name)].join(" ")).join(", ");
}

// One place of a case: its element's content or its attribute "title".
function checkPlace(nCase, sPlace, sFamily, sText, sElements)
{
    const sWhere = sFamily + ", " + sPlace;
    const tElement = document.getElementById(sPlace + nCase);
    ++nPlaces;
    if (!tElement)
        return addProblem("elements", sWhere + ": the element is lost", "", sText);
    const bAttribute = sPlace === "double" || sPlace === "single";
    const sFound = bAttribute ? tElement.getAttribute("title") : tElement.textContent;
    const sMeant = sPlace === "field" ? "\n" + sText : sText;
    if (sFound !== sMeant)
        addProblem("texts", sWhere + ": another text", sFound, sMeant);
    if (tElement.attributes.length !== (bAttribute ? 2 : 1))
        addProblem("attributes", sWhere + ": other attributes",
                   [...tElement.attributes].map((t) => t.name).join(" "), sText);
    const sFoundElements = skeletonOf(tElement);
    if (sFoundElements !== (bAttribute ? "" : sElements))
        addProblem("elements", sWhere + ": other elements", sFoundElements, sElements + " for " + sText);
}

function checkGot(aMeant)
{
    const tLeft = new Map();
    for (const s of aMeant)
        tLeft.set(s, (tLeft.get(s) ?? 0) + 1);
    for (const s of aGot)
    {
        if (!tLeft.get(s))
            addProblem("texts", "a script was given a text that no value is", s);
        tLeft.set(s, (tLeft.get(s) ?? 0) - 1);
    }
    for (const [s, n] of tLeft)
        if (n > 0)
            addProblem("texts", "no script was given the text", "", s);
    nPlaces += aMeant.length;
}

function runHandlers()
{
    for (const tElement of document.querySelectorAll("[data-run]"))
    {
        if ([...tElement.attributes].map((t) => t.name).join(" ") !== "data-run onclick" || skeletonOf(tElement) !== "")
            addProblem("attributes", "other attributes or elements", tElement.outerHTML);
        tElement.click();
    }
}

function check({families, places, cases, scripts})
{
    let nElements = 0;
    cases.forEach(([nFamily, sText, sElements], nCase) => {
        for (const sPlace of places[nFamily])
        {
            checkPlace(nCase, sPlace, families[nFamily], sText, sElements);
            nElements += 1 + (sPlace === "body" && sElements ? sElements.split(",").length : 0);
        }
    });
    runHandlers();
    checkGot(scripts);
    nElements += document.querySelectorAll("[data-run], script[data-value]").length;
    const nFound = document.body ? document.body.querySelectorAll("*").length : -1;
    if (nFound !== nElements)
        addProblem("elements", "elements in the page", nFound, nElements);
}

// Later than the errors of images that do not load, which run scripts of their own.
window.addEventListener("load", () => setTimeout(() => {
    check(pageTest);
    const sReport = JSON.stringify({places: nPlaces, problems, examples});
    const sSafe = sReport.replace(/[^ -~]|[<&]/g, (s) => "\\u" + s.charCodeAt(0).toString(16).padStart(4, "0"));
    document.documentElement.textContent = "REPORT" + sSafe;
}, 200));
