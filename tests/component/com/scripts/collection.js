// The public collection from JScript.
var failures = 0;
function check(what, actual, expected) {
    if (actual === expected) return;
    WScript.Echo(what + ": " + actual + " instead of " + expected);
    failures++;
}
function walk(enumerable) {
    var texts = [];
    for (var e = new Enumerator(enumerable); !e.atEnd(); e.moveNext()) texts.push(e.item());
    return texts.join(",");
}

var d = new ActiveXObject("Halvane.dCollection");
check("a first value is added", d.Add("x", "Key"), true);
check("a key is unique ignoring case", d.Add("y", "KEY"), false);
check("a value without key", d.Add(5, ""), true);
check("the count as a property", d.Count, 2);
check("the count as a method", d.Count(), 2);
check("a value by key", d.GetValue("key"), "x");
check("a value by position", d.Item2(2), 5);
check("a value by another key", d.Item2("KEY"), "x");
check("an entry that is no object", d.Item(1), null);
check("an absent value", d.GetValue("absent"), undefined);
check("the values in order", walk(d), "x,5");
check("the keys in order", walk(d.ReturnKeys()), "Key,");
check("a value of the values", d.ReturnValues().Item("key"), "x");
check("a key of the keys", d.ReturnKeys().Item(1), "Key");

var object = { name: "me" };
check("an object is added", d.Add(object, "object"), true);
check("it is the same object", d.Item("object") === object, true);
check("its key", d.FindValueKey(object), "object");
check("the value as it is set", d.SetValue(7.5, "Key"), true);
check("it moves to the end", walk(d.ReturnKeys()), ",object,Key");
check("its text", d.GetValueString("key"), "7.5");
check("the position of a key", d.FindIndexOfKey("Key"), 3);
check("the position of an absent key", d.FindIndexOfKey("key"), -1);
check("a value exists", d.bValueExist("5", true), true);
check("a removal", d.RemoveByKey("OBJECT"), true);
check("another removal", d.RemoveByIndex(9), false);
check("a numeric collection", d.IsNumericCollection(d), true);
check("a script's object is no collection", d.IsNumericCollection(object), false);
d.removeAll();
check("nothing is left", d.Count, 0);

try {
    d.QuicksortDouble(null, 0, 1);
    check("an error is raised", false, true);
} catch (e) {
    check("the number of an error", e.number & 0xFFFF, 9);
}
if (failures === 0) WScript.Echo("all holds");
WScript.Quit(failures === 0 ? 7 : 1);
