// The test component under JScript. The last line tells that nothing stopped it.
var failures = 0;

function check(what, actual, expected) {
    if (actual !== expected) {
        failures++;
        WScript.Echo("failed: " + what + ": " + actual + " instead of " + expected);
    }
}

function errorOf(action) {
    try {
        action();
    } catch (failure) {
        return { number: failure.number & 0xFFFF, description: failure.description };
    }
    return { number: 0, description: "" };
}

var items = new ActiveXObject("OrvTestComponent.TestItems");
items.Add("first");
items.Add(2);
items.Add("zero", 1);
check("count", items.Count, 3);
check("item", items.Item(1), "zero");
check("default member", items(3), 2);
var all = "";
for (var each = new Enumerator(items); !each.atEnd(); each.moveNext()) all += each.item() + ";";
check("Enumerator", all, "zero;first;2;");

var probe = new ActiveXObject("OrvTestComponent.TestProbe");
check("all arguments", probe.Join("a", 1, "c", "d", true), "A|1|C|D");
check("enumeration", probe.NextShape(), 7);

var mine = {
    value: "from the script",
    twice: function (x) { return x * 2; },
    total: function (x) { var t = 0; for (var i = 1; i <= x.Count; i++) t += i; return t; }
};
check("read from a script's object", probe.ReadFrom(mine, "value"), "from the script");
probe.WriteTo(mine, "value", 42);
check("written to a script's object", mine.value, 42);
check("called on a script's object", probe.CallOn(mine, "twice", 21), 42);
check("our object handed to the script", probe.CallOn(mine, "total", items), 6);

var failure = errorOf(function () { probe.Fail(777, "told"); });
check("error number", failure.number, 777);
check("error description", failure.description, "told");
check("unknown member", errorOf(function () { probe.ReadFrom(mine, "noSuchMember"); }).number, 438);

if (failures === 0) WScript.Echo("script ended well");
