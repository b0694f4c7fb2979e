// The external processors of the examples, as scripts: one says a sentence about the current layer, one tells in
// which square of 1000 by 1000 units a vertex lies.

function makeLayerReport() {
    return {
        Process: function (objects) {
            var layer = objects.GetValue("FeatureLayer");
            if (layer == null)
                return "no layer";
            return layer.Name + ": " + layer.FeatureClass.FeatureCount + " features, " + layer.SelectionCount +
                   " of them selected";
        }
    };
}

function makeGridSquare() {
    function thousands(coordinate) { return String(Math.floor(coordinate / 1000)); }
    return {
        Process: function (objects) {
            var point = objects.GetValue("Point");
            return point == null ? "nowhere" : thousands(point.X) + "/" + thousands(point.Y);
        }
    };
}
