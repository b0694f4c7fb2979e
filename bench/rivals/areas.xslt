<?xml version="1.0"?>
<!-- Makes the document of control/areas.xml, but for its line breaks, from what ogr2ogr writes as GML. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns:ogr="http://ogr.maptools.org/"
                xmlns:gml="http://www.opengis.net/gml/3.2" exclude-result-prefixes="ogr gml">
  <xsl:output method="xml" encoding="UTF-8" omit-xml-declaration="yes" indent="no"/>
  <xsl:strip-space elements="*"/>

  <xsl:template match="/">
    <Areas>
      <Layer>
        <xsl:apply-templates select="*/ogr:featureMember/ogr:areas"/>
      </Layer>
    </Areas>
  </xsl:template>

  <xsl:template match="ogr:areas">
    <Area number="{ogr:number}">
      <Vertex>
        <xsl:apply-templates select=".//gml:posList"/>
      </Vertex>
    </Area>
  </xsl:template>

  <xsl:template match="gml:posList">
    <Part>
      <xsl:call-template name="vertices">
        <xsl:with-param name="list" select="concat(., ' ')"/>
      </xsl:call-template>
    </Part>
  </xsl:template>

  <xsl:template name="vertices">
    <xsl:param name="list"/>
    <xsl:if test="$list">
      <xsl:variable name="rest" select="substring-after($list, ' ')"/>
      <Vertex x="{number(substring-before($list, ' '))}" y="{number(substring-before($rest, ' '))}"/>
      <xsl:call-template name="vertices">
        <xsl:with-param name="list" select="substring-after($rest, ' ')"/>
      </xsl:call-template>
    </xsl:if>
  </xsl:template>
</xsl:stylesheet>
